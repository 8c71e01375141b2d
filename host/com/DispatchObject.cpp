#include "host/com/DispatchObject.h"

#include <algorithm>
#include <deque>

#include "common/values/RuntimeError.h"
#include "host/com/Classes.h"
#include "host/com/Edge.h"
#include "host/com/Ole.h"
#include "host/com/Text.h"
#include "host/com/Values.h"
#include "host/win32/WideText.h"

namespace kvo::com {
namespace {

// Throws late binding's standard failures as numbered runtime errors.
[[noreturn]] void Raise(HRESULT code, std::string_view about) {
  switch (code) {
    case DISP_E_UNKNOWNNAME:
    case DISP_E_MEMBERNOTFOUND:
      throw RuntimeError(ErrorNumber::unknownMember, std::string(about));
    case DISP_E_TYPEMISMATCH:
      throw RuntimeError(ErrorNumber::typeMismatch, std::string(about));
    case DISP_E_OVERFLOW:
      throw RuntimeError(ErrorNumber::overflow, std::string(about));
    case DISP_E_BADINDEX:
      throw RuntimeError(ErrorNumber::subscriptOutOfRange, std::string(about));
    default:
      throw HostFailure(code);
  }
}

// An object's error information, freed at the end of its lifetime.
class ExceptionInfo {
 public:
  ExceptionInfo() = default;
  ExceptionInfo(const ExceptionInfo&) = delete;
  ExceptionInfo& operator=(const ExceptionInfo&) = delete;
  ~ExceptionInfo() {
    SysFreeString(info_.bstrDescription);
    SysFreeString(info_.bstrSource);
    SysFreeString(info_.bstrHelpFile);
  }
  EXCEPINFO* get() { return &info_; }
  [[noreturn]] void Raise() {
    if (info_.pfnDeferredFillIn != nullptr) info_.pfnDeferredFillIn(&info_);
    // An object may set its own error number instead of a code.
    const HRESULT code =
        info_.scode != 0 ? info_.scode : MAKE_HRESULT(1, FACILITY_ITF, info_.wCode);
    throw HostFailure(code, FromWide(ViewBstr(info_.bstrDescription)),
                      FromWide(ViewBstr(info_.bstrSource)));
  }

 private:
  EXCEPINFO info_{};
};

class VariantEnumerator final : public Enumerator {
 public:
  explicit VariantEnumerator(Pointer<IEnumVARIANT> walk) : walk_(std::move(walk)) {}
  std::optional<Variant> Next() override {
    AutoVariant element;
    const HRESULT code = walk_->Next(1, element.get(), nullptr);
    if (FAILED(code)) throw HostFailure(code);
    if (code != S_OK) return std::nullopt;
    return FromVariant(*element);
  }

 private:
  Pointer<IEnumVARIANT> walk_;
};

constexpr WORD kRead = DISPATCH_PROPERTYGET | DISPATCH_METHOD;

}  // namespace

DISPID DispatchObject::Find(std::string_view name) const {
  std::wstring wide = ToWide(name);
  LPOLESTR names = wide.data();
  DISPID member = DISPID_UNKNOWN;
  const HRESULT code = object_->GetIDsOfNames(IID_NULL, &names, 1, GetUserDefaultLCID(), &member);
  if (FAILED(code)) Raise(code, name);
  return member;
}

Variant DispatchObject::Invoke(DISPID member, WORD kind, std::span<const Variant> arguments,
                               std::string_view about) const {
  AutoVariant answer;
  Invoke(member, kind, arguments, about, answer.get());
  return FromVariant(*answer);
}

void DispatchObject::Invoke(DISPID member, WORD kind, std::span<const Variant> arguments,
                            std::string_view about, VARIANT* answer) const {
  std::deque<AutoVariant> owned;
  std::vector<VARIANTARG> passed;  // last argument first
  for (const Variant& argument : arguments) passed.push_back(*owned.emplace_back(argument));
  std::ranges::reverse(passed);

  const bool put = (kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
  DISPID named = DISPID_PROPERTYPUT;
  DISPPARAMS parameters{passed.data(), put ? &named : nullptr, static_cast<UINT>(passed.size()),
                        put ? 1u : 0u};
  ExceptionInfo exception;
  UINT wrongArgument = 0;
  const HRESULT code = object_->Invoke(member, IID_NULL, GetUserDefaultLCID(), kind, &parameters,
                                       put ? nullptr : answer, exception.get(), &wrongArgument);
  if (code == DISP_E_EXCEPTION) exception.Raise();
  if (FAILED(code)) Raise(code, about);
}

Variant DispatchObject::Get(std::string_view name) { return Invoke(Find(name), kRead, {}, name); }

void DispatchObject::Let(std::string_view name, Variant value) {
  const DISPID member = Find(name);
  const bool object = value.If<ObjectRef>() != nullptr;
  if (object) {
    try {
      Invoke(member, DISPATCH_PROPERTYPUTREF, {&value, 1}, name);
      return;
    } catch (const RuntimeError& error) {
      // Some objects support only plain assignment.
      if (error.Number() != static_cast<int>(ErrorNumber::unknownMember)) throw;
    }
  }
  Invoke(member, DISPATCH_PROPERTYPUT, {&value, 1}, name);
}

Variant DispatchObject::Call(std::string_view name, std::span<const Variant> arguments) {
  return Invoke(Find(name), kRead, arguments, name);
}

Variant DispatchObject::Item(const Variant& key) {
  return Invoke(DISPID_VALUE, kRead, {&key, 1}, "Item");
}

std::unique_ptr<Enumerator> DispatchObject::Enumerate() {
  constexpr std::string_view kName = "_NewEnum";
  AutoVariant answer;
  Invoke(DISPID_NEWENUM, kRead, {}, kName, answer.get());
  const VARIANT& walk = *answer;
  if (walk.vt != VT_UNKNOWN && walk.vt != VT_DISPATCH) Raise(DISP_E_TYPEMISMATCH, kName);
  auto elements = Pointer<IEnumVARIANT>::Query(walk.punkVal);
  if (!elements) Raise(DISP_E_TYPEMISMATCH, kName);
  return std::make_unique<VariantEnumerator>(std::move(elements));
}

std::optional<std::vector<std::string>> DispatchObject::PropertyPages() {
  const auto specify = Pointer<ISpecifyPropertyPages>::Query(object_.get());
  if (!specify) return std::nullopt;
  CAUUID pages{};
  Check(specify->GetPages(&pages));
  std::vector<std::string> names;
  for (ULONG i = 0; i < pages.cElems; ++i) names.push_back(PageName(pages.pElems[i]));
  CoTaskMemFree(pages.pElems);
  return names;
}

}  // namespace kvo::com
