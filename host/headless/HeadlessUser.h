// A user without eyes: acts on a form as a person does at real widgets, key by key and click by
// click, where no widgets are. Drives forms in tests and scripts.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/FormRenderer.h"
#include "host/headless/FormUser.h"
#include "host/headless/HeadlessPlatform.h"

namespace kvo {

class HeadlessUser final : public FormUser, public FormRenderer {
 public:
  // The platform is the one that the program runs on; its mouse button goes down with a click.
  HeadlessUser(HeadlessPlatform& platform, Form& form) : FormRenderer(form), platform_(platform) {}

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
  void PressInBox(EditBox& box, Key key);
  void PressInGrid(PropertyGrid& grid, Key key);
  void TypeInGrid(PropertyGrid& grid, std::string_view character);
  void PressDialogButton(CommandButton::Role role);
  void StepOption(const OptionButton& button, int step);

  HeadlessPlatform& platform_;
  bool valueSelected_ = false;  // the next character replaces the selected row's value
};

}  // namespace kvo
