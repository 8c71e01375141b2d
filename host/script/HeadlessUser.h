// Acts on a form without widgets as a person does on real ones, key by key and click by click.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/forms/FormRenderer.h"
#include "host/headless/HeadlessPlatform.h"
#include "host/script/FormUser.h"

namespace kvo {

class HeadlessUser : public FormUser, public FormRenderer {
 public:
  // `platform` is the running program's; clicks hold down its mouse button. Focuses the first input
  // of an open dialog.
  HeadlessUser(HeadlessPlatform& platform, Form& form);

  void FocusByKeyboard(FormControl& control) override;
  void ClickInto(EditBox& box, std::size_t caret) override;
  void Type(std::string_view text) override;
  void Press(Key key) override;
  void Click(FormControl& control) override;
  void DoubleClick(Grid& grid, std::size_t row) override;
  using FormUser::Choose;
  void Choose(ComboBox& box, int row) override;
  void SelectTab(TabControl& tabs, std::size_t tab) override;
  void SelectRows(Grid& grid, std::vector<std::size_t> rows) override;
  void SelectItem(PropertyGridItem& item) override;
  void ClickButton(PropertyGridItem& item) override;
  void Choose(PropertyGridItem& item, std::string_view choice) override;
  void CloseWindow() override;
  void Tick(Timer& timer) override;

  // A part of a text, in characters.
  struct Part {
    std::size_t start = 0;
    std::size_t length = 0;
  };

 protected:
  void ControlChanged(FormControl& control, Aspect aspect) override;
  void ItemChanged(PropertyGridItem& item) override;

 private:
  void MustBeOpen() const;
  void MustBeReachable(const FormControl& control) const;
  void FocusByMouse(FormControl& control);
  void EnterByKeyboard(FormControl& control, bool backwards);
  void MoveFocus(bool backwards);
  bool MoveInsideGrid(bool backwards);
  void TypeStroke(std::string_view stroke);
  void PressInBox(EditBox& box, Key key);
  void PressInList(ComboBox& list, Key key);
  void PressInGrid(PropertyGrid& grid, Key key);
  void PressInValue(PropertyGridItem& item, Key key);
  void EditSelectedValue(PropertyGridItem& item, Part replaced, std::string_view typed);
  void SelectValue(const PropertyGrid& grid);
  void MoveToRow(PropertyGrid& grid, Key key);
  void PressDialogButton(CommandButton::Role role);
  void StepOption(const OptionButton& button, int step);

  HeadlessPlatform& platform_;
  const bool isOpenDialog_;
  Part value_;  // the selection in the value box of a grid's selected row
  std::size_t valueSize_ = 0;
  int editsValue_ = 0;
  bool besideValue_ = false;  // the focus is on the button beside that box
};

}  // namespace kvo
