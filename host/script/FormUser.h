// A user in front of a form, whoever shows it: what scripts act through. One implementation acts on
// the form itself (HeadlessUser); a toolkit's acts on the widgets that show it.
#pragma once

#include <memory>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "common/forms/Form.h"
#include "common/forms/FormGrid.h"
#include "common/forms/FormPropertyGrid.h"

namespace kvo {

// What a person could not have done either: the control is hidden or disabled, is no such row, ...
class CannotDo : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Home and end are those of a whole text: where the lines of a box wrap, its font decides.
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

// What the page's events throw comes out of the action that raised them.
class FormUser {
 public:
  virtual ~FormUser() = default;

  // --- focus ---
  // As the tab key does it, straight to the control.
  virtual void FocusByKeyboard(FormControl& control) = 0;
  // A click into the box, which puts the caret behind that many characters.
  virtual void ClickInto(EditBox& box, std::size_t caret) = 0;

  // --- keyboard, at the focused control ---
  // Each character by itself; CR LF and LF are the enter key.
  virtual void Type(std::string_view text) = 0;
  virtual void Press(Key key) = 0;

  // --- mouse ---
  virtual void Click(FormControl& control) = 0;
  virtual void DoubleClick(Grid& grid, std::size_t row) = 0;
  virtual void Choose(ComboBox& box, int row) = 0;
  virtual void SelectTab(TabControl& tabs, std::size_t tab) = 0;
  // None: a click below the rows.
  virtual void SelectRows(Grid& grid, std::vector<std::size_t> rows) = 0;
  virtual void SelectItem(PropertyGridItem& item) = 0;
  virtual void ClickButton(PropertyGridItem& item) = 0;
  // By what the choice shows.
  virtual void Choose(PropertyGridItem& item, std::string_view choice) = 0;
  virtual void CloseWindow() = 0;

  // Time goes by for a running timer.
  virtual void Tick(Timer& timer) = 0;

  // By what the row shows.
  void Choose(ComboBox& box, std::string_view text);
};

}  // namespace kvo
