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

// IPropertyPage2: a page of the core inside any property frame, on the system's own controls. The
// objects that it edits are any IDispatch with the properties that the page knows.
//
// A host may let go of the page from within one of its events, and it ends behind that then.
//
// The page is filled when it is shown, not when it gets its objects: some pages count as changed by
// being filled, and one that nobody looked at must have nothing to apply.
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
  // Writes the page into the objects. A failure is shown to the person who pressed the button, and
  // goes back to the frame; the page stays changed.
  HRESULT STDMETHODCALLTYPE Apply() noexcept override;
  HRESULT STDMETHODCALLTYPE Help(LPCOLESTR) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE TranslateAccelerator(MSG* message) noexcept override;
  // IPropertyPage2
  HRESULT STDMETHODCALLTYPE EditProperty(DISPID) noexcept override;
  // ISupportErrorInfo
  HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) noexcept override;

 private:
  class Ending;

  void* Find(REFIID iid) override;
  void End() noexcept override;
  void StatusChanged(PropertyPage& page) override;
  void Fill();
  void Tell(const std::wstring& failure);

  const std::wstring source_;
  std::unique_ptr<PropertyPage> page_;
  std::unique_ptr<FormWindow> window_;
  std::vector<ObjectRef> objects_;
  Pointer<IPropertyPageSite> site_;
  bool filled_ = false;
  std::wstring untold_;  // why the page could not be filled, until it is shown
  std::unique_ptr<Ending> ending_;
};

}  // namespace kvo::com
