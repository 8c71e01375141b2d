// Keeps an edit box of Windows in step with a text of the form.
#pragma once

#include <windows.h>

#include <string>

#include "host/win32/ControlView.h"
#include "host/win32/OwnWindow.h"
#include "host/win32/ShownText.h"

namespace kvo {

// A text of the form that is edited. Positions and lengths count characters.
class EditedText {
 public:
  EditedText() = default;
  EditedText(const EditedText&) = delete;
  EditedText& operator=(const EditedText&) = delete;
  virtual ~EditedText() = default;

  struct Selection {
    std::size_t start = 0;
    std::size_t length = 0;
  };

  virtual std::string Text() const = 0;
  virtual Selection Selected() const = 0;
  virtual void Select(const Selection& selection) = 0;
  virtual void Edit(const Selection& replaced, std::string_view typed) = 0;
};

// The text of an edit box.
class BoxText final : public EditedText {
 public:
  explicit BoxText(EditBox& box) : box_(box) {}
  std::string Text() const override { return box_.Text(); }
  Selection Selected() const override { return {box_.SelStart(), box_.SelLength()}; }
  void Select(const Selection& selection) override {
    UserAction::Select(box_, selection.start, selection.length);
  }
  void Edit(const Selection& replaced, std::string_view typed) override {
    UserAction::Edit(box_, replaced.start, replaced.length, typed);
  }

 private:
  EditBox& box_;
};

class EditSync {
 public:
  EditSync(HWND edit, EditedText& text, Lines lines, ViewHost& host);

  // From the form to the window; within ViewHost::Update.
  void ShowText();
  void ShowSelection();
  // The window's text has changed.
  void Edited();

 private:
  LRESULT Message(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT Character(WPARAM unit, LPARAM lParam);
  bool LeaveSelection(WPARAM key);
  void SelectionMayHaveMoved();
  void Copy() const;
  void Paste() const;
  UnitRange InWindow() const;
  UnitRange InForm() const;
  EditedText::Selection ToForm(const UnitRange& units) const;

  HWND edit_;
  EditedText& text_;
  ViewHost& host_;
  ShownText shown_;
  wchar_t firstHalf_ = 0;  // of a character that is typed in two
  WindowHook hook_;
};

}  // namespace kvo
