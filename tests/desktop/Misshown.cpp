#include <algorithm>

#include "common/forms/PropertyRows.h"
#include "tests/desktop/DesktopUser.h"

namespace kvo {
namespace {

std::string InWords(const std::u16string& text) {
  std::string words = "\"";
  for (const char16_t unit : text)
    if (unit >= ' ' && unit < 0x7F)
      words += static_cast<char>(unit);
    else
      words += '<' + std::to_string(static_cast<unsigned>(unit)) + '>';
  return words + '"';
}
template <class Number>
std::string InWords(Number number) {
  return std::to_string(number);
}

class Looker {
 public:
  explicit Looker(DesktopUser& user) : user_(user) {}
  std::string found;

  void LookAt(FormControl& control) {
    control_ = &control;
    WithKind(control, *this);
    if (dynamic_cast<TabPanel*>(&control) || dynamic_cast<Timer*>(&control)) return;
    Demand("enabled", control.Enabled(), user_.ShowsEnabled(control));
    Demand("visible", control.Visible(), user_.ShowsVisible(control));
  }

  void operator()(Label& label) {
    Demand("caption", user_.AsShown(label.Caption()), user_.ShownTextOf(label));
  }
  void operator()(TextBox& box) { LookAtText(box, box.MultiLine() ? Lines::many : Lines::one); }
  void operator()(ComboBox& box) {
    Demand("choice", box.ListIndex(), user_.ShownChoice(box));
    const std::vector<std::u16string> rows = user_.ShownRows(box);
    Demand("rows", box.Rows().size(), rows.size());
    for (std::size_t row = 0; row < std::min(rows.size(), box.Rows().size()); ++row)
      Demand("row", user_.AsShown(box.Rows()[row].text), rows[row]);
    if (box.Editable())
      LookAtText(box, Lines::one);
    else
      Demand("text", user_.AsShown(box.Text()), user_.ShownTextOf(box));
  }
  void operator()(CheckBox& box) { Demand("mark", box.Value(), user_.ShowsMark(box)); }
  void operator()(OptionButton& button) { Demand("mark", button.Value(), user_.ShowsMark(button)); }
  void operator()(CommandButton&) {}
  void operator()(Frame&) {}
  void operator()(PictureBox&) {}
  void operator()(TabControl& tabs) {
    Demand("open tab", tabs.SelectedTab(), user_.ShownTab(tabs));
  }
  void operator()(TabPanel&) {}
  void operator()(PropertyGrid& grid) {
    if (const auto items = user_.ShownItems(grid)) {
      Demand("rows", grid.Items().size(), items->size());
      for (std::size_t row = 0; row < std::min(items->size(), grid.Items().size()); ++row) {
        const PropertyGridItem& item = *grid.Items()[row];
        Demand("row", user_.AsShown(item.Caption()), (*items)[row].caption);
        Demand("value", user_.AsShown(ToText(item.Value())), (*items)[row].value);
      }
    }
    if (const auto row = user_.ShownItem(grid))
      Demand("selected row", RowOf(grid, grid.SelectedItem()), *row);
    const auto value = user_.ShownValue(grid);
    if (!value) return;
    if (grid.SelectedItem() == nullptr) return Tell("a box is open without a selected row");
    const std::string held = ToText(grid.SelectedItem()->Value());
    Demand("edited value", ShownText(held, Lines::one, user_.Style()).Units(), *value);
  }
  void operator()(Grid& grid) {
    Demand("columns", grid.Columns().size(), user_.ShownColumns(grid));
    Demand("records", grid.RowCount(), user_.ShownRecords(grid));
    for (std::size_t row = 0; row < user_.ShownRecords(grid); ++row)
      for (std::size_t column = 0; column < grid.Columns().size(); ++column)
        Demand("cell", user_.AsShown(grid.Cell(row, column)), user_.ShownCell(grid, row, column));
    if (user_.ShownSelection(grid) != grid.SelectedRows()) Tell("different rows are selected");
  }
  void operator()(Timer& timer) {
    Demand("clock", timer.IsRunning() && timer.Enabled(), user_.ShowsRunning(timer));
  }

 private:
  void LookAtText(const EditBox& box, Lines lines) {
    const ShownText shown(box.Text(), lines, user_.Style());
    Demand("text", shown.Units(), user_.ShownTextOf(box));
    const UnitRange selected = user_.ShownSelection(box);
    const int start = shown.ToWidget(box.SelStart());
    Demand("selection's begin", start, selected.start);
    Demand("selection's length", shown.ToWidget(box.SelStart() + box.SelLength()) - start,
           selected.length);
  }

  void Tell(const std::string& what) {
    found += "  misshown: " + std::string(control_->Name()) + ": " + what + '\n';
  }
  template <class Value>
  void Demand(const char* what, const Value& held, const Value& shown) {
    if (held != shown)
      Tell(std::string(what) + ": held " + InWords(held) + ", shown " + InWords(shown));
  }

  DesktopUser& user_;
  FormControl* control_ = nullptr;
};

}  // namespace

std::string Misshown(DesktopUser& user, const Form& form) {
  Looker looker(user);
  for (FormControl* control : form.AllControls()) looker.LookAt(*control);
  return looker.found;
}

}  // namespace kvo
