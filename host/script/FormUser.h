// A user of a form, through which scripts act. One implementation acts on the form itself
// (HeadlessUser); those of the toolkits act on the widgets that show it.
#pragma once

#include <memory>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "common/forms/Form.h"
#include "common/forms/FormGrid.h"
#include "common/forms/FormPropertyGrid.h"

namespace kvo {

// Thrown for an action that a person could not do either: the control is hidden or disabled, the
// row does not exist, and so on.
class CannotDo : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Home and End move within the whole text, because where a box wraps its lines depends on the font.
enum class Key {
  tab,
  shiftTab,
  enter,
  escape,
  space,
  backspace,
  del,
  home,
  end,
  left,
  right,
  up,
  down,
  selectAll,
};

// Actions pass on the exceptions of the page's events.
class FormUser {
 public:
  virtual ~FormUser() = default;

  // --- focus ---
  // Moves the focus straight to the control, as if by the Tab key.
  virtual void FocusByKeyboard(FormControl& control) = 0;
  // Clicks into the box, behind that many characters.
  virtual void ClickInto(EditBox& box, std::size_t caret) = 0;

  // --- keyboard, at the focused control ---
  // Types one character at a time; CR LF and LF are the Enter key.
  virtual void Type(std::string_view text) = 0;
  virtual void Press(Key key) = 0;

  // --- mouse ---
  virtual void Click(FormControl& control) = 0;
  virtual void DoubleClick(Grid& grid, std::size_t row) = 0;
  virtual void Choose(ComboBox& box, int row) = 0;
  virtual void SelectTab(TabControl& tabs, std::size_t tab) = 0;
  // No rows: clicks below them.
  virtual void SelectRows(Grid& grid, std::vector<std::size_t> rows) = 0;
  virtual void SelectItem(PropertyGridItem& item) = 0;
  virtual void ClickButton(PropertyGridItem& item) = 0;
  // Chooses by the choice's caption.
  virtual void Choose(PropertyGridItem& item, std::string_view choice) = 0;
  virtual void CloseWindow() = 0;

  // Lets a running timer tick.
  virtual void Tick(Timer& timer) = 0;

  // Chooses by the row's text.
  void Choose(ComboBox& box, std::string_view text);
};

}  // namespace kvo
