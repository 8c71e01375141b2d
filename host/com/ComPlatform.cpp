#include "host/com/ComPlatform.h"

#include <algorithm>

#include "common/values/RuntimeError.h"
#include "host/com/Classes.h"
#include "host/com/Edge.h"
#include "host/com/Ole.h"
#include "host/com/Text.h"
#include "host/com/Values.h"
#include "host/win32/WideText.h"

namespace kvo::com {

kvo::GuidText ComPlatform::NewGuid() {
  GUID guid{};
  Check(CoCreateGuid(&guid));
  kvo::GuidText text{};
  std::ranges::copy(FromWide(GuidString(guid)), text.characters.begin());
  return text;
}

std::string ComPlatform::Format(const Variant& value, std::string_view pattern) {
  AutoVariant formatted(value);
  std::wstring format = ToWide(pattern);
  Bstr text;
  Check(VarFormat(formatted.get(), format.data(), 0, 0, 0, text.Receive()));
  return text.Utf8();
}

void ComPlatform::ShowPropertyFrame(WindowHandle owner, std::string_view caption, ObjectRef object,
                                    const std::vector<std::string>& pages) {
  std::vector<CLSID> ids;
  std::ranges::transform(pages, std::back_inserter(ids), PageClassId);
  const Pointer<IDispatch> dispatch = ToDispatch(object);
  IUnknown* shown = dispatch.get();
  Check(OleCreatePropertyFrame(reinterpret_cast<HWND>(owner), 0, 0, ToWide(caption).c_str(), 1,
                               &shown, static_cast<ULONG>(ids.size()), ids.data(),
                               GetUserDefaultLCID(), 0, nullptr));
}

ObjectRef ComPlatform::NewRecordset() {
  constexpr const wchar_t* kRecordset = L"ADODB.Recordset";
  CLSID id{};
  Pointer<IDispatch> recordset;
  if (FAILED(CLSIDFromProgID(kRecordset, &id)) ||
      FAILED(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                              reinterpret_cast<void**>(recordset.Receive()))))
    throw RuntimeError(ErrorNumber::cannotCreateObject, FromWide(kRecordset));
  return FromDispatch(recordset.get());
}

}  // namespace kvo::com
