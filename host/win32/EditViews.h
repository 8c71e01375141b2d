// The views of what can be typed into.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <memory>

#include "host/win32/ControlView.h"
#include "host/win32/EditSync.h"

namespace kvo {

class TextBoxView final : public WindowView<TextBox> {
 public:
  TextBoxView(TextBox& box, HWND parent, ViewHost& host);
  void Show(Aspect aspect) override;
  void Command(WORD notification) override;
  HBRUSH Color(HDC device) override;
  KeyUse Key(WPARAM key, HWND window) override;

 private:
  BoxText text_;
  EditSync sync_;
};

class ComboBoxView final : public WindowView<ComboBox> {
 public:
  ComboBoxView(ComboBox& box, HWND parent, ViewHost& host);
  void Show(Aspect aspect) override;
  void Command(WORD notification) override;
  void Enter(bool backwards) override;
  KeyUse Key(WPARAM key, HWND window) override;
  // The user has chosen a row, or thought better of it.
  void Later() override;

 private:
  void ShowChoices();
  bool IsOpen() const;

  // A key in the closed list chooses only a row that was not chosen before.
  enum class Accepted { nothing, key, click };

  BoxText text_;
  std::unique_ptr<EditSync> sync_;  // of a box that can be typed into
  Accepted accepted_ = Accepted::nothing;
};

// --- lists that drop down ---

// For ShowRows.
class ListOfRows {
 public:
  explicit ListOfRows(HWND list) : list_(list) {}
  std::size_t Count() const;
  void Clear();
  void Add(std::string_view text);
  int Chosen() const;
  void Choose(int row);

 private:
  HWND list_;
};

// How much of the screen a list takes while it is dropped down.
inline constexpr int kDropHeight = 3000;

// Makes a list as high as forms plan it, whatever Windows likes.
void SetListHeight(HWND list, int height);
// The edit box of a list that can be typed into; nullptr of others.
HWND EditOf(HWND list);
// What a key means to a list: while it is dropped down, the enter and the escape key close it.
ControlView::KeyUse KeyOfList(HWND list, WPARAM key);

}  // namespace kvo
