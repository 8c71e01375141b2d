// A form with every kind of control except data grids, for the tests of renderers.
#pragma once

#include <string>
#include <vector>

#include "common/forms/Form.h"
#include "common/forms/FormPropertyGrid.h"
#include "common/values/RuntimeError.h"

namespace kvo {

class SampleForm final : public Form {
 public:
  SampleForm() : Form("Muster & Co", {6000, 4500}) {}
  KVO_CONTROL(Label, lblName, .caption = "R&D && <b>x</b>", .at = {0, 0, 1500, 240});
  KVO_CONTROL(
      TextBox, txtName, .at = {1600, 0, 1500, 300},
      .onGotFocus = [this](TextBox&) { log.emplace_back("focus"); });
  KVO_CONTROL(
      CheckBox, chkA, .caption = "A & B", .at = {0, 400, 1500, 240},
      .onClick = [this](CheckBox&) { log.emplace_back("check"); });
  KVO_CONTROL(
      OptionButton, optA, .caption = "eins & zwei", .at = {0, 700, 1500, 240},
      .onClick = [this](OptionButton&) { ++optionClicks; });
  KVO_CONTROL(OptionButton, optB, .caption = "drei", .at = {0, 1000, 1500, 240});
  KVO_CONTROL(
      CommandButton, cmdFail, .caption = "Los & weg", .at = {0, 1300, 1500, 360},
      .onClick = [](CommandButton&) { throw RuntimeError(ErrorNumber::typeMismatch); });
  KVO_CONTROL(Frame, fraBox, .caption = "Rahmen & mehr", .at = {0, 1700, 3000, 600});
  KVO_CONTROL(TabControl, tabs, .at = {0, 2400, 3000, 1000});
  KVO_CONTROL_IN(tabs, TabPanel, panA, .caption = "T & U");
  KVO_CONTROL_IN(panA, TextBox, txtInner, .at = {0, 0, 900, 300});
  KVO_CONTROL_IN(tabs, TabPanel, panB, .caption = "zwei");
  KVO_CONTROL_IN(panB, CheckBox, chkInner, .caption = "c", .at = {0, 0, 900, 300});
  KVO_CONTROL(
      ComboBox, cboRows, .at = {3200, 0, 1500, 300},
      .onChange = [this](ComboBox&) { log.emplace_back("choice"); },
      .onClick = [this](ComboBox&) { ++rowClicks; });
  KVO_CONTROL(
      PropertyGrid, suiRows, .at = {3200, 400, 1500, 1500},
      .onButtonClick = [this](PropertyGridItem&) { onButton(); },
      .onDeleteKey = [this](PropertyGrid&) { log.emplace_back("delete"); });
  KVO_CONTROL(
      Timer, tmr, .onTick = [this](Timer&) { log.emplace_back("tick"); });
  std::vector<std::string> log;
  int optionClicks = 0;
  int rowClicks = 0;
  std::function<void()> onButton;
};

}  // namespace kvo
