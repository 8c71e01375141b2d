#include "host/com/PageObject.h"

#include "common/values/RuntimeError.h"
#include "host/com/Edge.h"
#include "host/com/Ole.h"
#include "host/com/Text.h"
#include "host/com/Values.h"
#include "host/win32/OwnWindow.h"
#include "host/win32/WideText.h"

namespace kvo::com {

// Deletes a page once none of its events is running.
class PageObject::DeferredDeletion final : private OwnWindow {
 public:
  explicit DeferredDeletion(PageObject& page) : page_(page) {
    Begin(HWND_MESSAGE, {.style = 0});
    SetTimer(Handle(), 1, USER_TIMER_MINIMUM, nullptr);
  }

 private:
  LRESULT Message(UINT message, WPARAM wParam, LPARAM lParam) noexcept override {
    if (message != WM_TIMER) return Default(message, wParam, lParam);
    if (!page_.window_->IsBusy()) delete &page_;  // also deletes this
    return 0;
  }

  PageObject& page_;
};

PageObject::PageObject(const RegisteredPage& registered, IUnknown* outer)
    : Identity(outer),
      Part(static_cast<Identity&>(*this)),
      source_(ProgId(registered.name)),
      page_(registered.create()) {
  page_->Site(this);
}

PageObject::~PageObject() = default;

void PageObject::End() noexcept {
  if (!window_ || !window_->IsBusy()) return Identity::End();
  site_ = {};
  try {
    deferredDeletion_ = std::make_unique<DeferredDeletion>(*this);
  } catch (const std::exception&) {
    // Leaks the page, which is better than deleting it inside its own event.
  }
}

void* PageObject::Find(REFIID iid) {
  if (iid == IID_IPropertyPage || iid == IID_IPropertyPage2)
    return static_cast<IPropertyPage2*>(this);
  if (iid == IID_ISupportErrorInfo) return static_cast<ISupportErrorInfo*>(this);
  return nullptr;
}

HRESULT PageObject::SetPageSite(IPropertyPageSite* site) noexcept {
  if (site != nullptr && site_) return E_UNEXPECTED;
  site_ = Pointer<IPropertyPageSite>(site);
  return S_OK;
}

HRESULT PageObject::Activate(HWND parent, LPCRECT place, BOOL) noexcept {
  if (place == nullptr) return E_POINTER;
  if (window_) return E_UNEXPECTED;
  const Pointer<IUnknown> hold(Outer());
  return Boundary(source_, [&] {
    window_ = std::make_unique<FormWindow>(*page_, parent);
    window_->onFailure = [this](const std::exception& failure) {
      ShowFailure(ToWide(FailureText(failure)));
    };
    Move(place);
    if (!filled_ && !objects_.empty()) Fill();
  });
}

void PageObject::Fill() {
  try {
    unshownFailure_.clear();
    filled_ = false;
    page_->Select(objects_);
    filled_ = true;
  } catch (const std::exception& failure) {
    unshownFailure_ = ToWide(FailureText(failure));
    if (window_) EnableWindow(window_->Window(), FALSE);
    throw;
  }
  if (window_) EnableWindow(window_->Window(), TRUE);
}

HRESULT PageObject::Deactivate() noexcept {
  if (!window_) return E_UNEXPECTED;
  if (window_->IsBusy()) return E_UNEXPECTED;  // one of its events is running
  return Boundary(source_, [&] { window_.reset(); });
}

HRESULT PageObject::GetPageInfo(PROPPAGEINFO* info) noexcept {
  if (info == nullptr) return E_POINTER;
  *info = {};
  info->cb = sizeof *info;
  return Boundary(source_, [&] {
    info->size = FormWindow::PixelSize(*page_);
    info->pszTitle = TaskText(ToWide(page_->Caption()));
  });
}

HRESULT PageObject::SetObjects(ULONG count, IUnknown** objects) noexcept {
  if (count > 0 && objects == nullptr) return E_POINTER;
  const Pointer<IUnknown> hold(Outer());
  return Boundary(source_, [&] {
    std::vector<ObjectRef> selected;
    for (ULONG i = 0; i < count; ++i) {
      if (objects[i] == nullptr) return E_POINTER;
      const auto object = Pointer<IDispatch>::Query(objects[i]);
      if (!object) return E_NOINTERFACE;
      selected.push_back(FromDispatch(object.get()));
    }
    objects_ = std::move(selected);
    filled_ = false;
    if (window_ && !objects_.empty()) Fill();
    return S_OK;
  });
}

HRESULT PageObject::Show(UINT command) noexcept {
  if (!window_) return E_UNEXPECTED;
  ShowWindow(window_->Window(), static_cast<int>(command));
  if (command != SW_HIDE && !unshownFailure_.empty())
    ShowFailure(std::exchange(unshownFailure_, {}));
  return S_OK;
}

HRESULT PageObject::Move(LPCRECT place) noexcept {
  if (place == nullptr) return E_POINTER;
  if (!window_) return E_UNEXPECTED;
  SetWindowPos(window_->Window(), nullptr, place->left, place->top, place->right - place->left,
               place->bottom - place->top, SWP_NOZORDER | SWP_NOACTIVATE);
  return S_OK;
}

HRESULT PageObject::IsPageDirty() noexcept { return filled_ && page_->Changed() ? S_OK : S_FALSE; }

HRESULT PageObject::Apply() noexcept {
  if (objects_.empty()) return E_UNEXPECTED;
  if (!filled_) return S_OK;  // never shown, so not edited
  const Pointer<IUnknown> hold(Outer());
  try {
    page_->Apply();
    return S_OK;
  } catch (...) {
    const Failure failure = CaughtFailure(source_);
    ShowFailure(failure.description);
    return Report(failure);
  }
}

HRESULT PageObject::TranslateAccelerator(MSG* message) noexcept {
  if (message == nullptr) return E_POINTER;
  if (!window_) return S_FALSE;
  const Pointer<IUnknown> hold(Outer());
  return Boundary(source_, [&] { return window_->TranslateKey(*message) ? S_OK : S_FALSE; });
}

HRESULT PageObject::EditProperty(DISPID) noexcept {
  if (!window_) return E_UNEXPECTED;
  return Boundary(source_, [&] { window_->FocusFirst(); });
}

HRESULT PageObject::InterfaceSupportsErrorInfo(REFIID iid) noexcept {
  return iid == IID_IPropertyPage || iid == IID_IPropertyPage2 ? S_OK : S_FALSE;
}

void PageObject::StatusChanged(PropertyPage& page) {
  const Pointer<IPropertyPageSite> site = site_;
  if (site) site->OnStatusChange(page.Changed() ? PROPPAGESTATUS_DIRTY : PROPPAGESTATUS_CLEAN);
}

// Shows a failure to the user.
void PageObject::ShowFailure(const std::wstring& failure) {
  const HWND owner = window_ ? window_->Window() : nullptr;
  MessageBoxW(owner, failure.c_str(), ToWide(page_->Caption()).c_str(), MB_OK | MB_ICONEXCLAMATION);
}

}  // namespace kvo::com
