#include "host/registration/classes.h"

#include "common/Ascii.h"
#include "controls/DTCPrint.h"

namespace kvo {
namespace {

constexpr RegisteredControl kControls[] = {
    {DTCPrint::Contract, "{6F1B5C0E-6B0A-4B57-9C55-0F6D1C6A7E01}"},
};

constexpr std::string_view kProgId = "progid:";
constexpr std::string_view kClsid = "clsid:";

bool StartsWith(std::string_view text, std::string_view prefix) {
  return EqualIgnoringCase(text.substr(0, prefix.size()), prefix);
}

// The class name in "progid:KVOPDesignObjects.NAME"; empty when the library is another one.
std::string_view ClassNameOf(std::string_view classId) {
  if (!StartsWith(classId, kProgId)) return {};
  classId.remove_prefix(kProgId.size());
  if (!StartsWith(classId, kLibraryName)) return {};
  classId.remove_prefix(kLibraryName.size());
  return classId.starts_with('.') ? classId.substr(1) : std::string_view();
}

std::string_view WithoutBraces(std::string_view guid) {
  if (guid.starts_with('{')) guid.remove_prefix(1);
  if (guid.ends_with('}')) guid.remove_suffix(1);
  return guid;
}

}  // namespace

std::span<const RegisteredControl> RegisteredControls() { return kControls; }

const RegisteredControl* FindControlByName(std::string_view className) {
  for (const RegisteredControl& control : kControls)
    if (control.contract().name == className) return &control;
  return nullptr;
}

const RegisteredControl* FindControlByClassId(std::string_view classId) {
  const std::string_view className = ClassNameOf(classId);
  for (const RegisteredControl& control : kControls) {
    if (!className.empty() && EqualIgnoringCase(control.contract().name, className))
      return &control;
    if (StartsWith(classId, kClsid) &&
        EqualIgnoringCase(WithoutBraces(classId.substr(kClsid.size())),
                          WithoutBraces(control.classId)))
      return &control;
  }
  return nullptr;
}

bool IsOurProgId(std::string_view classId) {
  return StartsWith(classId, kProgId) &&
         StartsWith(classId.substr(kProgId.size()), kLibraryName);
}

}  // namespace kvo
