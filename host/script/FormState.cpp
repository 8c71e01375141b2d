#include "host/script/FormState.h"

#include <algorithm>

#include "common/forms/FormGrid.h"
#include "common/forms/FormPropertyGrid.h"

namespace kvo {
namespace {

// In the order of ItemKind.
constexpr std::string_view kKindNames[] = {"category", "text",  "list",  "color",
                                           "button",   "entry", "choice"};

std::string RowName(const PropertyGridItem& item) {
  return item.Key().empty() ? item.Caption() : item.Key();
}

ControlState RowState(const PropertyGridItem& item) {
  ControlState row{"row", RowName(item), {}, {}};
  row.values = {{"kind", std::string(kKindNames[static_cast<int>(item.Kind())])},
                {"caption", item.Caption()},
                {"value", ToText(item.Value())},
                {"enabled", item.Enabled()}};
  if (item.Kind() != ItemKind::list) return row;
  std::vector<std::string> choices;
  for (const auto& choice : item.Choices()) choices.push_back(choice->Caption());
  row.values.emplace_back("choices", std::move(choices));
  return row;
}

class StateReader {
 public:
  explicit StateReader(ControlState& state) : state_(state) {}

  void operator()(Label& label) { Captioned("label", label.Caption()); }
  void operator()(TextBox& box) {
    state_.kind = "textBox";
    Add("text", box.Text());
    Add("selection", std::to_string(box.SelStart()) + ',' + std::to_string(box.SelLength()));
  }
  void operator()(ComboBox& box) {
    state_.kind = "comboBox";
    Add("text", box.Text());
    Add("choice", box.ListIndex());
    std::vector<std::string> choices;
    for (const ComboBox::Row& row : box.Rows()) choices.push_back(row.text);
    Add("choices", std::move(choices));
  }
  void operator()(CheckBox& box) {
    Captioned("checkBox", box.Caption());
    Add("checked", box.Value());
  }
  void operator()(OptionButton& button) {
    Captioned("optionButton", button.Caption());
    Add("checked", button.Value());
  }
  void operator()(CommandButton& button) { Captioned("commandButton", button.Caption()); }
  void operator()(Frame& frame) { Captioned("frame", frame.Caption()); }
  void operator()(PictureBox&) { state_.kind = "pictureBox"; }
  void operator()(TabControl& tabs) {
    state_.kind = "tabControl";
    std::vector<std::string> captions;
    for (const FormControl* panel : tabs.Controls()) captions.emplace_back(panel->Caption());
    if (!captions.empty()) Add("tab", captions[tabs.SelectedTab()]);
    Add("tabs", std::move(captions));
  }
  void operator()(TabPanel& panel) { Captioned("tabPanel", panel.Caption()); }
  void operator()(PropertyGrid& grid) {
    Captioned("propertyGrid", grid.Caption());
    Add("selected", grid.SelectedItem() ? RowName(*grid.SelectedItem()) : std::string());
    for (const auto& item : grid.Items()) state_.parts.push_back(RowState(*item));
  }
  void operator()(Grid& grid) {
    state_.kind = "grid";
    std::vector<std::string> columns;
    for (const GridColumn& column : grid.Columns()) columns.push_back(column.caption);
    Add("columns", std::move(columns));
    Add("rows", static_cast<int>(grid.RowCount()));
    std::vector<std::string> selected;
    for (const std::size_t row : grid.SelectedRows()) selected.push_back(std::to_string(row));
    Add("selected", std::move(selected));
    constexpr std::size_t kRowsThatShow = 10;
    for (std::size_t row = 0; row < std::min(grid.RowCount(), kRowsThatShow); ++row) {
      std::vector<std::string> cells;
      for (std::size_t column = 0; column < grid.Columns().size(); ++column)
        cells.push_back(grid.Cell(row, column));
      state_.parts.push_back({"record", std::to_string(row), {{"cells", std::move(cells)}}, {}});
    }
  }
  void operator()(Timer& timer) {
    state_.kind = "timer";
    Add("running", timer.IsRunning());
    Add("interval", timer.Interval());
  }

 private:
  void Add(std::string_view name, StateValue value) {
    state_.values.emplace_back(name, std::move(value));
  }
  void Captioned(std::string_view kind, std::string_view caption) {
    state_.kind = kind;
    Add("caption", std::string(caption));
  }

  ControlState& state_;
};

}  // namespace

const StateValue* ControlState::Find(std::string_view valueName) const {
  for (const auto& [name_, value] : values)
    if (name_ == valueName) return &value;
  return nullptr;
}

ControlState StateOf(FormControl& control) {
  ControlState state{{}, std::string(control.Name()), {}, {}};
  state.values = {{"enabled", control.Enabled()}, {"visible", control.Visible()}};
  StateReader reader(state);
  WithKind(control, reader);
  return state;
}

std::vector<ControlState> StateOf(const Form& form) {
  std::vector<ControlState> states;
  for (FormControl* control : form.AllControls()) states.push_back(StateOf(*control));
  return states;
}

}  // namespace kvo
