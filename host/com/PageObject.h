#pragma once

#include <memory>
#include <string>
#include <vector>

#include "common/forms/PropertyPage.h"
#include "host/com/Classes.h"
#include "host/com/Identity.h"
#include "host/com/Ole.h"
#include "host/win32/FormWindow.h"

namespace kvo::com {

// IPropertyPage2: a page inside any property frame, on native controls. It edits any IDispatch that
// has the properties it knows.
//
// Defers its destruction until its event returns if the host releases it inside one.
//
// Fills the page when it is shown, not when it gets its objects: filling marks some pages changed,
// and a page that was never shown must have nothing to apply.
class PageObject final : public Identity,
                         private Part<IPropertyPage2, ISupportErrorInfo>,
                         private PropertyPageSite {
 public:
  PageObject(const RegisteredPage& registered, IUnknown* outer);
  ~PageObject() override;

  // IPropertyPage
  HRESULT STDMETHODCALLTYPE SetPageSite(IPropertyPageSite* site) noexcept override;
  HRESULT STDMETHODCALLTYPE Activate(HWND parent, LPCRECT place, BOOL modal) noexcept override;
  HRESULT STDMETHODCALLTYPE Deactivate() noexcept override;
  HRESULT STDMETHODCALLTYPE GetPageInfo(PROPPAGEINFO* info) noexcept override;
  HRESULT STDMETHODCALLTYPE SetObjects(ULONG count, IUnknown** objects) noexcept override;
  HRESULT STDMETHODCALLTYPE Show(UINT command) noexcept override;
  HRESULT STDMETHODCALLTYPE Move(LPCRECT place) noexcept override;
  HRESULT STDMETHODCALLTYPE IsPageDirty() noexcept override;
  // Writes the page to the objects. Shows a failure to the user and returns it to the frame; the
  // page stays changed.
  HRESULT STDMETHODCALLTYPE Apply() noexcept override;
  HRESULT STDMETHODCALLTYPE Help(LPCOLESTR) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE TranslateAccelerator(MSG* message) noexcept override;
  // IPropertyPage2
  HRESULT STDMETHODCALLTYPE EditProperty(DISPID) noexcept override;
  // ISupportErrorInfo
  HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) noexcept override;

 private:
  class DeferredDeletion;

  void* Find(REFIID iid) override;
  void End() noexcept override;
  void StatusChanged(PropertyPage& page) override;
  void Fill();
  void ShowFailure(const std::wstring& failure);

  const std::wstring source_;
  std::unique_ptr<PropertyPage> page_;
  std::unique_ptr<FormWindow> window_;
  std::vector<ObjectRef> objects_;
  Pointer<IPropertyPageSite> site_;
  bool filled_ = false;
  std::wstring unshownFailure_;  // a failure of filling the page, not shown yet
  std::unique_ptr<DeferredDeletion> deferredDeletion_;
};

}  // namespace kvo::com
