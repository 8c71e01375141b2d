// A user without eyes: acts on a form as a person does at real widgets, key by key and click by
// click. Drives forms in tests and scripts.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/FormRenderer.h"
#include "host/headless/HeadlessPlatform.h"

namespace kvo {

// What a person could not have done either: the control is hidden or disabled, is no such row, ...
class CannotDo : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

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
class HeadlessUser final : public FormRenderer {
 public:
  // The platform is the one that the program runs on; its mouse button goes down with a click.
  HeadlessUser(HeadlessPlatform& platform, Form& form) : FormRenderer(form), platform_(platform) {}

  // --- focus ---
  // As the tab key does it, straight to the control.
  void FocusByKeyboard(FormControl& control);
  // A click into the box, which puts the caret behind that many characters.
  void ClickInto(EditBox& box, std::size_t caret);

  // --- keyboard, at the focused control ---
  // Each character by itself; CR LF and LF are the enter key.
  void Type(std::string_view text);
  void Press(Key key);

  // --- mouse ---
  void Click(FormControl& control);
  void DoubleClick(Grid& grid, std::size_t row);
  void Choose(ComboBox& box, int row);
  // By what the row shows.
  void Choose(ComboBox& box, std::string_view text);
  void SelectTab(TabControl& tabs, std::size_t tab);
  void SelectRows(Grid& grid, std::vector<std::size_t> rows);
  void SelectItem(PropertyGridItem& item);
  void ClickButton(PropertyGridItem& item);
  void Choose(PropertyGridItem& item, std::string_view choice);
  void CloseWindow();

  // Time goes by for a running timer.
  void Tick(Timer& timer);

  // What the form told its renderer, in order.
  struct Seen {
    std::string_view control;
    Aspect aspect;
    bool operator==(const Seen&) const = default;
  };
  std::vector<Seen> seen;

 private:
  void ControlChanged(FormControl& control, Aspect aspect) override {
    seen.push_back({control.Name(), aspect});
  }
  void ItemChanged(PropertyGridItem& item) override {
    seen.push_back({item.Grid().Name(), Aspect::value});
  }

  void MustBeReachable(const FormControl& control) const;
  void FocusByMouse(FormControl& control);
  void MoveFocus(bool backwards);
  bool IsTabStop(const FormControl& control) const;
  void PressInBox(EditBox& box, Key key);
  void PressInGrid(PropertyGrid& grid, Key key);
  void TypeInGrid(PropertyGrid& grid, std::string_view character);
  bool PressDialogButton(CommandButton::Role role);
  void StepOption(OptionButton& button, int step);

  HeadlessPlatform& platform_;
  bool valueSelected_ = false;  // the next character replaces the selected row's value
};

}  // namespace kvo
