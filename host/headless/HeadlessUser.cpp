#include "host/headless/HeadlessUser.h"

#include <algorithm>

#include "common/FormKeys.h"

namespace kvo {
namespace {

[[noreturn]] void Cannot(const FormControl& control, std::string_view why) {
  throw CannotDo(std::string(control.Name()) + ": " + std::string(why));
}

// Holds the left mouse button down.
class MouseDown {
 public:
  explicit MouseDown(HeadlessPlatform& platform) : state_(platform.keys[1]) { state_ |= 0x80; }
  MouseDown(const MouseDown&) = delete;
  MouseDown& operator=(const MouseDown&) = delete;
  ~MouseDown() { state_ = static_cast<std::uint8_t>(state_ & 0x7F); }

 private:
  std::uint8_t& state_;
};

}  // namespace

void FormUser::Choose(ComboBox& box, std::string_view text) {
  const auto row = std::ranges::find(box.Rows(), text, &ComboBox::Row::text);
  if (row == box.Rows().end()) Cannot(box, "has no row \"" + std::string(text) + '"');
  Choose(box, static_cast<int>(row - box.Rows().begin()));
}

void HeadlessUser::MustBeReachable(const FormControl& control) const {
  if (!control.IsReachable()) Cannot(control, "is disabled or does not show");
}

void HeadlessUser::FocusByKeyboard(FormControl& control) {
  MustBeReachable(control);
  if (!control.TakesFocus()) Cannot(control, "takes no focus");
  if (auto* combo = dynamic_cast<ComboBox*>(&control)) Select(*combo, 0, combo->TextLength());
  valueSelected_ = true;
  Focus(&control);
}

void HeadlessUser::FocusByMouse(FormControl& control) {
  MustBeReachable(control);
  if (!control.TakesFocus()) return;
  const MouseDown down(platform_);
  Focus(&control);
}

void HeadlessUser::ClickInto(EditBox& box, std::size_t caret) {
  FocusByMouse(box);
  Select(box, caret, 0);
}

void HeadlessUser::MoveFocus(bool backwards) {
  std::vector<FormControl*> stops;
  for (FormControl* control : Shown().AllControls())
    if (control == Shown().Focused() || IsTabStop(*control)) stops.push_back(control);
  if (stops.empty()) return;
  if (backwards) std::ranges::reverse(stops);
  auto next = std::ranges::find(stops, Shown().Focused());
  if (next != stops.end()) ++next;
  FocusByKeyboard(**(next == stops.end() ? stops.begin() : next));
}

void HeadlessUser::Type(std::string_view text) {
  for (const std::string_view stroke : SplitStrokes(text)) {
    if (stroke == kEnterStroke) {
      Press(Key::enter);
      continue;
    }
    FormControl* focused = Shown().Focused();
    if (focused == nullptr) throw CannotDo("nothing has the keyboard focus");
    MustBeReachable(*focused);
    if (auto* combo = dynamic_cast<ComboBox*>(focused); combo && !combo->Editable())
      Cannot(*combo, "only its rows can be chosen");
    if (auto* box = dynamic_cast<EditBox*>(focused)) {
      Edit(*box, box->SelStart(), box->SelLength(), stroke);
    } else if (auto* grid = dynamic_cast<PropertyGrid*>(focused)) {
      TypeInGrid(*grid, stroke);
    } else if (stroke == " ") {
      Press(Key::space);
    } else {
      Cannot(*focused, "cannot be typed into");
    }
  }
}

void HeadlessUser::TypeInGrid(PropertyGrid& grid, std::string_view character) {
  PropertyGridItem* item = grid.SelectedItem();
  if (item == nullptr) Cannot(grid, "no row is selected");
  if (!TakesText(*item)) Cannot(grid, "the row \"" + item->Caption() + "\" cannot be typed into");
  if (std::exchange(valueSelected_, false))
    EditValue(*item, OneLine(character));
  else
    AppendToValue(*item, OneLine(character));
}

void HeadlessUser::Press(Key key) {
  if (key == Key::tab || key == Key::shiftTab) return MoveFocus(key == Key::shiftTab);
  FormControl* focused = Shown().Focused();
  if (key == Key::escape) return PressDialogButton(CommandButton::Role::cancelsDialog);
  if (focused != nullptr) MustBeReachable(*focused);
  if (auto* button = dynamic_cast<CommandButton*>(focused);
      button && (key == Key::enter || key == Key::space))
    return FormRenderer::Click(*button);
  if (auto* text = dynamic_cast<TextBox*>(focused); key == Key::enter && text && text->MultiLine())
    return Edit(*text, text->SelStart(), text->SelLength(), "\r\n");
  if (key == Key::enter) return PressDialogButton(CommandButton::Role::acceptsDialog);
  if (focused == nullptr) throw CannotDo("nothing has the keyboard focus");
  if (auto* box = dynamic_cast<EditBox*>(focused)) return PressInBox(*box, key);
  if (auto* grid = dynamic_cast<PropertyGrid*>(focused)) return PressInGrid(*grid, key);
  if (auto* check = dynamic_cast<CheckBox*>(focused); check && key == Key::space)
    return FormRenderer::Click(*check);
  if (auto* option = dynamic_cast<OptionButton*>(focused)) {
    if (key == Key::space) return FormRenderer::Click(*option);
    if (key == Key::up || key == Key::left) return StepOption(*option, -1);
    if (key == Key::down || key == Key::right) return StepOption(*option, 1);
  }
  if (auto* tabs = dynamic_cast<TabControl*>(focused)) {
    const std::size_t tab = tabs->SelectedTab();
    if (key == Key::right && tab + 1 < tabs->Controls().size())
      return FormRenderer::SelectTab(*tabs, tab + 1);
    if (key == Key::left && tab > 0) return FormRenderer::SelectTab(*tabs, tab - 1);
  }
}

void HeadlessUser::PressInBox(EditBox& box, Key key) {
  const std::size_t start = box.SelStart();
  const std::size_t length = box.SelLength();
  const std::size_t size = box.TextLength();
  auto* combo = dynamic_cast<ComboBox*>(&box);
  switch (key) {
    case Key::backspace:
      if (length > 0)
        Edit(box, start, length, {});
      else if (start > 0)
        Edit(box, start - 1, 1, {});
      break;
    case Key::del:
      if (length > 0)
        Edit(box, start, length, {});
      else if (start < size)
        Edit(box, start, 1, {});
      break;
    case Key::home:
      Select(box, 0, 0);
      break;
    case Key::end:
      Select(box, size, 0);
      break;
    case Key::left:
      Select(box, length > 0 ? start : start - std::min<std::size_t>(start, 1), 0);
      break;
    case Key::right:
      Select(box, length > 0 ? start + length : start + 1, 0);
      break;
    case Key::selectAll:
      Select(box, 0, size);
      break;
    case Key::space:
      Type(" ");
      break;
    case Key::up:
      if (combo && combo->ListIndex() > 0) FormRenderer::Choose(*combo, combo->ListIndex() - 1);
      break;
    case Key::down:
      if (combo && combo->ListIndex() + 1 < static_cast<int>(combo->Rows().size()))
        FormRenderer::Choose(*combo, combo->ListIndex() + 1);
      break;
    default:
      break;
  }
}

void HeadlessUser::PressInGrid(PropertyGrid& grid, Key key) {
  PropertyGridItem* item = grid.SelectedItem();
  if (key == Key::del) return PressDelete(grid);
  if (key == Key::space) return TypeInGrid(grid, " ");
  if (item == nullptr) return;
  if (key == Key::selectAll) {
    valueSelected_ = true;
  } else if (key == Key::backspace) {
    std::string text = ToText(item->Value());
    const std::size_t kept = valueSelected_ ? 0 : CharacterCount(text) - (text.empty() ? 0 : 1);
    EditValue(*item, std::string_view(text).substr(0, CharacterOffset(text, kept)));
    valueSelected_ = false;
  }
}

void HeadlessUser::PressDialogButton(CommandButton::Role role) {
  if (CommandButton* button = DialogButton(Shown(), role)) FormRenderer::Click(*button);
}

void HeadlessUser::StepOption(const OptionButton& button, int step) {
  OptionButton& next = *NextOption(button, step);
  Focus(&next);
  FormRenderer::Click(next);
}

void HeadlessUser::Click(FormControl& control) {
  FocusByMouse(control);
  if (auto* button = dynamic_cast<CommandButton*>(&control)) return FormRenderer::Click(*button);
  if (auto* check = dynamic_cast<CheckBox*>(&control)) return FormRenderer::Click(*check);
  if (auto* option = dynamic_cast<OptionButton*>(&control)) return FormRenderer::Click(*option);
  if (auto* box = dynamic_cast<EditBox*>(&control)) return Select(*box, box->TextLength(), 0);
}

void HeadlessUser::DoubleClick(Grid& grid, std::size_t row) {
  SelectRows(grid, {row});
  FormRenderer::DoubleClick(grid);
}

void HeadlessUser::Choose(ComboBox& box, int row) {
  FocusByMouse(box);
  if (row < 0 || row >= static_cast<int>(box.Rows().size()))
    Cannot(box, "has no row " + std::to_string(row));
  FormRenderer::Choose(box, row);
}

void HeadlessUser::SelectTab(TabControl& tabs, std::size_t tab) {
  MustBeReachable(tabs);
  if (tab >= tabs.Controls().size()) Cannot(tabs, "has no such tab");
  FormRenderer::SelectTab(tabs, tab);
}

void HeadlessUser::SelectRows(Grid& grid, std::vector<std::size_t> rows) {
  FocusByMouse(grid);
  for (const std::size_t row : rows)
    if (row >= grid.RowCount()) Cannot(grid, "has no row " + std::to_string(row));
  FormRenderer::SelectRows(grid, std::move(rows));
}

void HeadlessUser::SelectItem(PropertyGridItem& item) {
  FocusByMouse(item.Grid());
  FormRenderer::SelectItem(item.Grid(), &item);
  valueSelected_ = true;
}

void HeadlessUser::ClickButton(PropertyGridItem& item) {
  SelectItem(item);
  if (item.Kind() != ItemKind::color && item.Kind() != ItemKind::button)
    Cannot(item.Grid(), "the row \"" + item.Caption() + "\" has no button");
  if (!item.Enabled()) Cannot(item.Grid(), "the row \"" + item.Caption() + "\" is disabled");
  FormRenderer::ClickButton(item);
}

void HeadlessUser::Choose(PropertyGridItem& item, std::string_view choice) {
  SelectItem(item);
  for (const auto& candidate : item.Choices())
    if (candidate->Caption() == choice) return ChooseValue(item, *candidate);
  Cannot(item.Grid(),
         "the row \"" + item.Caption() + "\" has no choice \"" + std::string(choice) + '"');
}

void HeadlessUser::CloseWindow() { FormRenderer::CloseWindow(); }

void HeadlessUser::Tick(Timer& timer) {
  if (!timer.IsRunning()) Cannot(timer, "is not running");
  FormRenderer::Tick(timer);
}

}  // namespace kvo
