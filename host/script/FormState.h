// The content of a form as named values, for scripts and JSON.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "common/forms/Form.h"

namespace kvo {

using StateValue = std::variant<bool, int, std::string, std::vector<std::string>>;

// A control, or a row of a property grid. By kind, its values are:
//   all            enabled, visible
//   label          caption             text box   text, selection ("start,length")
//   list           text, choice (row from 0, or -1), choices
//   check box      caption, checked    option     caption, checked
//   button, frame  caption             timer      running, interval
//   tabs           tab (the open one's caption), tabs
//   property grid  caption, selected (the row's key, or caption); its rows are its parts:
//   row            kind, caption, value, enabled, choices
//   data grid      columns, rows (how many), selected (row numbers); its visible rows are its
//                  parts, each with cells
struct ControlState {
  std::string kind;
  std::string name;  // for a row, its key, or its caption without one; for a record, its index
  std::vector<std::pair<std::string_view, StateValue>> values;
  std::vector<ControlState> parts;

  // nullptr when there is no such value.
  const StateValue* Find(std::string_view valueName) const;
};

ControlState StateOf(FormControl& control);

// Returns all controls in tab order, each container directly followed by its own controls.
std::vector<ControlState> StateOf(const Form& form);

}  // namespace kvo
