// Synchronises a Windows edit box with a text of the form.
#pragma once

#include <windows.h>

#include <string>

#include "host/desktop/TextSync.h"
#include "host/win32/ControlView.h"
#include "host/win32/OwnWindow.h"

namespace kvo {

class EditSync final : public TextSync {
 public:
  EditSync(HWND edit, EditedText& text, Lines lines, FormActions& host);

 private:
  std::u16string Units() const override;
  void ShowUnits(const std::u16string& units) override;
  UnitRange Selection() const override;
  void Select(const UnitRange& selection) override;

  LRESULT Message(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT Character(WPARAM unit, LPARAM lParam);
  bool LeaveSelection(WPARAM key);
  void Copy() const;
  void Paste() const;

  HWND edit_;
  wchar_t firstHalf_ = 0;  // high surrogate, until the low one is typed
  WindowHook hook_;
};

}  // namespace kvo
