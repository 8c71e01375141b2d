#include "host/com/ControlPages.h"

#include <algorithm>

#include "common/values/Ascii.h"
#include "host/com/ControlDispatch.h"
#include "host/com/Edge.h"
#include "host/com/Text.h"

namespace kvo::com {
namespace {

// Stands before a control and notes whether one of its properties is read.
class Reader final : public Object {
 public:
  Reader(Control& control, std::string_view wanted) : control_(control), wanted_(wanted) {}

  Variant Get(std::string_view name) override {
    wasRead_ = wasRead_ || EqualIgnoringCase(name, wanted_);
    return control_.Get(name);
  }
  bool WasRead() const { return wasRead_; }

 private:
  Control& control_;
  std::string_view wanted_;
  bool wasRead_ = false;
};

bool Shows(PropertyPage& page, Control& control, std::string_view property) {
  const auto reader = std::make_shared<Reader>(control, property);
  try {
    page.Select({reader});
  } catch (const std::exception&) {
    // What it read until then counts.
  }
  return reader->WasRead();
}

}  // namespace

HRESULT ControlPages::GetPages(CAUUID* pages) noexcept {
  if (!Clear(pages)) return E_POINTER;
  return Boundary(state_.source, [&] {
    const auto names = state_.Contract().pages;
    auto* ids =
        static_cast<GUID*>(CoTaskMemAlloc(std::max<std::size_t>(1, names.size()) * sizeof(GUID)));
    if (ids == nullptr) throw std::bad_alloc();
    std::ranges::transform(names, ids, PageClassId);
    *pages = {static_cast<ULONG>(names.size()), ids};
  });
}

HRESULT ControlPages::GetDisplayString(DISPID member, BSTR* text) noexcept {
  if (!Clear(text)) return E_POINTER;
  return Boundary(state_.source, [&] {
    const PropertyRow* row = FindProperty(state_.Contract(), member);
    if (row == nullptr) return DISP_E_MEMBERNOTFOUND;
    if (row->type == PropertyType::object) return S_FALSE;  // nothing to show
    *text = Bstr(ToText(row->get(*state_.control))).Detach();
    return S_OK;
  });
}

HRESULT ControlPages::MapPropertyToPage(DISPID member, CLSID* page) noexcept {
  if (!Clear(page)) return E_POINTER;
  return Boundary(state_.source, [&] {
    const PropertyRow* row = FindProperty(state_.Contract(), member);
    if (row == nullptr) return DISP_E_MEMBERNOTFOUND;
    for (const std::string_view name : state_.Contract().pages) {
      if (row->type == PropertyType::object ||
          !Shows(*CreatePage(name), *state_.control, row->name))
        continue;
      *page = PageClassId(name);
      return S_OK;
    }
    return PERPROP_E_NOPAGEAVAILABLE;
  });
}

HRESULT ControlPages::GetPredefinedStrings(DISPID, CALPOLESTR* texts, CADWORD* cookies) noexcept {
  return Clear(texts, cookies) ? E_NOTIMPL : E_POINTER;
}

HRESULT ControlPages::GetPredefinedValue(DISPID, DWORD, VARIANT* value) noexcept {
  return Clear(value) ? E_NOTIMPL : E_POINTER;
}

}  // namespace kvo::com
