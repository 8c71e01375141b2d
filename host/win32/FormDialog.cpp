#include "host/win32/FormDialog.h"

#include "common/values/RuntimeError.h"
#include "host/win32/Messages.h"
#include "host/win32/ModalLoop.h"
#include "host/win32/WindowText.h"

namespace kvo {
namespace {

// Shows a failure after the event that caused it; lParam owns its text.
constexpr UINT kShowFailure = WM_APP + 0x4C0;

}  // namespace

FormDialog::FormDialog(Form& form, HWND owner)
    : owner_(owner == nullptr ? nullptr : GetAncestor(owner, GA_ROOT)) {
  const SIZE size = WindowSize(FormWindow::PixelSize(form), kDialogStyle, kDialogExStyle);
  const POINT at = CentredPosition(size, owner_);
  Begin(owner_, {.text = ToWindowText(form.Caption()),
                 .style = kDialogStyle,
                 .exStyle = kDialogExStyle,
                 .place = {at.x, at.y, at.x + size.cx, at.y + size.cy}});
  view_ = std::make_unique<FormWindow>(form, Handle());
  view_->onFailure = [this](const std::exception& failure) {
    auto text = std::make_unique<std::string>(FailureText(failure));
    if (PostMessageW(Handle(), kShowFailure, 0, reinterpret_cast<LPARAM>(text.get())))
      static_cast<void>(text.release());  // the message owns it
  };
  view_->onUnloaded = [this] { EndRun(); };
}

FormDialog::~FormDialog() {
  MSG message{};  // a pending failure, whose text must be freed
  while (Handle() != nullptr &&
         PeekMessageW(&message, Handle(), kShowFailure, kShowFailure, PM_REMOVE))
    delete reinterpret_cast<std::string*>(message.lParam);
  view_.reset();
  End();
}

void FormDialog::Show() {
  ShowWindow(view_->Window(), SW_SHOWNA);
  ShowWindow(Handle(), SW_SHOW);
  view_->FocusFirst();
}

void FormDialog::Run() {
  Show();
  const DisabledOwner disabled(owner_);
  RunUntil([this] { return ended_ || Handle() == nullptr; },
           [this](MSG& message) { return Translate(message); });
}

bool FormDialog::Translate(MSG& message) {
  if (view_->TranslateKey(message)) return true;
  const bool here = message.hwnd == Handle() || IsChild(Handle(), message.hwnd);
  if (!here || message.message != WM_KEYDOWN) return false;
  if (message.wParam == VK_TAB) {  // wraps around at the last input
    if (GetKeyState(VK_SHIFT) < 0)
      view_->FocusLast();
    else
      view_->FocusFirst();
    return true;
  }
  if (message.wParam != VK_ESCAPE || message.hwnd != GetFocus()) return false;
  // An open list uses the key itself.
  const HWND list = GetParent(message.hwnd);
  if (SendMessageW(message.hwnd, CB_GETDROPPEDSTATE, 0, 0) ||
      SendMessageW(list, CB_GETDROPPEDSTATE, 0, 0))
    return false;
  view_->UserClosesWindow();
  return true;
}

LRESULT FormDialog::Message(UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  switch (message) {
    case WM_CLOSE:
      view_->UserClosesWindow();
      return 0;
    case WM_ACTIVATE:
      // Saves the focus when deactivated, and restores it.
      if (LOWORD(wParam) == WA_INACTIVE) {
        if (IsChild(Handle(), GetFocus())) focused_ = GetFocus();
      } else if (focused_ != nullptr && IsChild(Handle(), focused_)) {
        SetFocus(focused_);
      }
      return 0;
    case kShowFailure: {
      const std::unique_ptr<std::string> text(reinterpret_cast<std::string*>(lParam));
      ShowMessageBox(Handle(), *text);
      return 0;
    }
    default:
      break;
  }
  return Default(message, wParam, lParam);
}

}  // namespace kvo
