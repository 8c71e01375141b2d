#include "host/com/Classes.h"

#include "common/values/RuntimeError.h"
#include "host/com/Text.h"
#include "host/win32/WideText.h"

namespace kvo::com {

const RegisteredControl* FindControl(REFCLSID classId) {
  for (const RegisteredControl& control : RegisteredControls())
    if (ToGuid(control.classId) == classId) return &control;
  return nullptr;
}

const RegisteredPage* FindPage(REFCLSID classId) {
  for (const RegisteredPage& page : RegisteredPages())
    if (ToGuid(page.classId) == classId) return &page;
  return nullptr;
}

std::string PageName(REFCLSID classId) {
  const RegisteredPage* page = FindPage(classId);
  return page == nullptr ? FromWide(GuidString(classId)) : std::string(page->name);
}

CLSID PageClassId(std::string_view name) {
  if (const RegisteredPage* page = kvo::FindPage(name)) return ToGuid(page->classId);
  const CLSID foreign = ToGuid(name);
  if (foreign == CLSID_NULL) throw RuntimeError(ErrorNumber::cannotCreateObject, std::string(name));
  return foreign;
}

std::wstring ProgId(std::string_view className) {
  return ToWide(kLibraryName) + L'.' + ToWide(className);
}

}  // namespace kvo::com
