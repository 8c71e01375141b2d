#include "host/script/HeadlessUser.h"

#include <algorithm>
#include <optional>

#include "common/forms/FormActions.h"
#include "common/forms/FormKeys.h"
#include "common/forms/PropertyRows.h"

namespace kvo {
namespace {

[[noreturn]] void Cannot(const FormControl& control, std::string_view why) {
  throw CannotDo(std::string(control.Name()) + ": " + std::string(why));
}

// Whether a position is between a CR and its LF, where a multi-line box has no place for the caret.
bool InsideLineBreak(const EditBox& box, std::size_t position) {
  const auto* text = dynamic_cast<const TextBox*>(&box);
  if (text == nullptr || !text->MultiLine() || position == 0) return false;
  const std::size_t before = CharacterOffset(text->Text(), position - 1);
  return std::string_view(text->Text()).substr(before).starts_with("\r\n");
}

bool IsClosedList(const FormControl& control) {
  const auto* list = dynamic_cast<const ComboBox*>(&control);
  return list != nullptr && !list->Editable();
}

// Whether keys go to the row's value box while the row is selected.
bool HasOpenBox(const PropertyGridItem& item) { return HasValueBox(item) && item.Enabled(); }

// How many characters a key moves back or forth from a position; 0 at the ends of the text.
std::size_t StepBack(const EditBox& box, std::size_t position) {
  if (position == 0) return 0;
  return InsideLineBreak(box, position - 1) ? 2 : 1;
}
std::size_t StepForth(const EditBox& box, std::size_t position) {
  if (position >= box.TextLength()) return 0;
  return InsideLineBreak(box, position + 1) ? 2 : 1;
}

// The effect of a key on a text: replaces a part of it, or selects that part.
struct Stroke {
  HeadlessUser::Part part;
  std::optional<std::string_view> typed{};
};

// `back` and `forth` are the steps of the caret from the start of the selection. Returns nothing
// for a key without an effect on text.
std::optional<Stroke> StrokeOf(Key key, HeadlessUser::Part selected, std::size_t size,
                               std::size_t back, std::size_t forth) {
  const auto [start, length] = selected;
  switch (key) {
    case Key::backspace:
      return length > 0 ? Stroke{selected, ""} : Stroke{{start - back, back}, ""};
    case Key::del:
      return length > 0 ? Stroke{selected, ""} : Stroke{{start, forth}, ""};
    case Key::space:
      return Stroke{selected, " "};
    case Key::home:
      return Stroke{{0, 0}};
    case Key::end:
      return Stroke{{size, 0}};
    case Key::left:
      return Stroke{{length > 0 ? start : start - back, 0}};
    case Key::right:
      return Stroke{{start + (length > 0 ? length : forth), 0}};
    case Key::selectAll:
      return Stroke{{0, size}};
    default:
      return std::nullopt;
  }
}

// Returns the list row that a key selects, or `now` if it does not move.
int NextChoice(Key key, int now, std::size_t rows) {
  const int last = static_cast<int>(rows) - 1;
  const int next = key == Key::up     ? now - 1
                   : key == Key::down ? now + 1
                   : key == Key::home ? 0
                   : key == Key::end  ? last
                                      : now;
  return next >= 0 && next <= last ? next : now;
}

// Holds the left mouse button down during its lifetime.
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
  const auto row = std::find_if(box.Rows().begin(), box.Rows().end(),
                                [&](const ComboBox::Row& each) { return each.text == text; });
  if (row == box.Rows().end()) Cannot(box, "has no row \"" + std::string(text) + '"');
  Choose(box, static_cast<int>(row - box.Rows().begin()));
}

HeadlessUser::HeadlessUser(HeadlessPlatform& platform, Form& form)
    : FormRenderer(form), platform_(platform), isOpenDialog_(form.IsLoaded()) {
  if (isOpenDialog_) MoveFocus(false);
}

void HeadlessUser::MustBeOpen() const {
  if (isOpenDialog_ && !Shown().IsLoaded()) throw CannotDo("the dialog is closed");
}

void HeadlessUser::MustBeReachable(const FormControl& control) const {
  MustBeOpen();
  if (!control.IsReachable()) Cannot(control, "is disabled or hidden");
}

void HeadlessUser::ControlChanged(FormControl&, Aspect) {
  // Moves the focus on if the focused control can no longer be used.
  if (Shown().Focused() != nullptr && !Shown().Focused()->IsReachable()) MoveFocus(false);
}

void HeadlessUser::ItemChanged(PropertyGridItem& item) {
  if (editsValue_ > 0 || &item != item.Grid().SelectedItem() || Shown().Focused() != &item.Grid())
    return;
  valueSize_ = CharacterCount(ToText(item.Value()));
  value_.start = std::min(value_.start, valueSize_);
  value_.length = std::min(value_.length, valueSize_ - value_.start);
}

void HeadlessUser::FocusByKeyboard(FormControl& control) {
  MustBeReachable(control);
  if (!control.TakesFocus()) Cannot(control, "cannot take the focus");
  EnterByKeyboard(control, false);
}

void HeadlessUser::EnterByKeyboard(FormControl& control, bool backwards) {
  if (auto* combo = dynamic_cast<ComboBox*>(&control); combo && combo->Editable())
    Select(*combo, 0, combo->TextLength());
  Focus(&control);
  const auto* grid = dynamic_cast<PropertyGrid*>(&control);
  if (grid == nullptr) return;
  SelectValue(*grid);
  const PropertyGridItem* item = grid->SelectedItem();
  besideValue_ =
      backwards && item != nullptr && item->Kind() == ItemKind::color && HasOpenBox(*item);
}

void HeadlessUser::FocusByMouse(FormControl& control) {
  MustBeReachable(control);
  if (!control.TakesFocus()) return;
  const MouseDown down(platform_);
  Focus(&control);
}

void HeadlessUser::ClickInto(EditBox& box, std::size_t caret) {
  MustBeReachable(box);
  if (IsClosedList(box)) Cannot(box, "only its rows can be chosen");
  FocusByMouse(box);
  Select(box, InsideLineBreak(box, caret) ? caret + 1 : caret, 0);
}

void HeadlessUser::MoveFocus(bool backwards) {
  if (MoveInsideGrid(backwards)) return;
  std::vector<FormControl*> stops;
  for (FormControl* control : Shown().AllControls())
    if (control == Shown().Focused() || IsTabStop(*control)) stops.push_back(control);
  if (stops.empty()) return;
  if (backwards) std::reverse(stops.begin(), stops.end());
  auto next = std::find(stops.begin(), stops.end(), Shown().Focused());
  if (next != stops.end()) ++next;
  FormControl& entered = **(next == stops.end() ? stops.begin() : next);
  if (entered.IsReachable())
    EnterByKeyboard(entered, backwards);
  else
    Focus(nullptr);
}

// Moves from the value to the button beside it, and back.
bool HeadlessUser::MoveInsideGrid(bool backwards) {
  const auto* grid = dynamic_cast<PropertyGrid*>(Shown().Focused());
  const PropertyGridItem* item = grid == nullptr ? nullptr : grid->SelectedItem();
  const bool button = item != nullptr && item->Kind() == ItemKind::color && HasOpenBox(*item);
  if (!button || !grid->IsReachable() || besideValue_ != backwards) return false;
  SelectValue(*grid);
  besideValue_ = !backwards;
  return true;
}

void HeadlessUser::Type(std::string_view text) {
  for (const std::string_view stroke : SplitStrokes(text)) {
    if (stroke == kEnterStroke) {
      Press(Key::enter);
      continue;
    }
    if (stroke == " ")
      Press(Key::space);
    else
      TypeStroke(stroke);
  }
}

void HeadlessUser::TypeStroke(std::string_view stroke) {
  FormControl* focused = Shown().Focused();
  if (focused == nullptr) throw CannotDo("nothing has the keyboard focus");
  MustBeReachable(*focused);
  if (IsClosedList(*focused)) Cannot(*focused, "only its rows can be chosen");
  if (auto* box = dynamic_cast<EditBox*>(focused))
    return Edit(*box, box->SelStart(), box->SelLength(), stroke);
  if (auto* grid = dynamic_cast<PropertyGrid*>(focused)) {
    PropertyGridItem* item = grid->SelectedItem();
    if (item == nullptr) Cannot(*grid, "no row is selected");
    if (besideValue_ || !TakesText(*item))
      Cannot(*grid, "the row \"" + item->Caption() + "\" cannot be typed into");
    return EditSelectedValue(*item, value_, stroke);
  }
  Cannot(*focused, "cannot be typed into");
}

void HeadlessUser::Press(Key key) {
  MustBeOpen();
  if (key == Key::tab || key == Key::shiftTab) return MoveFocus(key == Key::shiftTab);
  FormControl* focused = Shown().Focused();
  if (key == Key::escape) return PressDialogButton(CommandButton::Role::cancelsDialog);
  if (focused != nullptr) MustBeReachable(*focused);
  if (auto* button = dynamic_cast<CommandButton*>(focused);
      button && (key == Key::enter || key == Key::space))
    return FormRenderer::Click(*button);
  if (auto* text = dynamic_cast<TextBox*>(focused); key == Key::enter && text && text->MultiLine())
    return Edit(*text, text->SelStart(), text->SelLength(), "\r\n");
  if (auto* grid = dynamic_cast<PropertyGrid*>(focused); key == Key::enter && grid)
    return PressInGrid(*grid, key);
  if (key == Key::enter) return PressDialogButton(CommandButton::Role::acceptsDialog);
  if (focused == nullptr) throw CannotDo("nothing has the keyboard focus");
  if (auto* list = dynamic_cast<ComboBox*>(focused); list && !list->Editable())
    return PressInList(*list, key);
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
  auto* combo = dynamic_cast<ComboBox*>(&box);
  if (key == Key::up || key == Key::down) {
    if (combo != nullptr) PressInList(*combo, key);
    return;
  }
  if (key == Key::space) return TypeStroke(" ");
  const std::size_t start = box.SelStart();
  const auto stroke = StrokeOf(key, {start, box.SelLength()}, box.TextLength(),
                               StepBack(box, start), StepForth(box, start));
  if (!stroke) return;
  if (stroke->typed)
    Edit(box, stroke->part.start, stroke->part.length, *stroke->typed);
  else
    Select(box, stroke->part.start, stroke->part.length);
}

void HeadlessUser::PressInList(ComboBox& list, Key key) {
  const int now = list.ListIndex();
  const int next = NextChoice(key, now, list.Rows().size());
  if (next != now) FormRenderer::Choose(list, next);
}

void HeadlessUser::PressInGrid(PropertyGrid& grid, Key key) {
  PropertyGridItem* item = grid.SelectedItem();
  const bool presses = key == Key::space || key == Key::enter;
  if (presses && item != nullptr && (besideValue_ || item->Kind() == ItemKind::button)) {
    FormRenderer::ClickButton(*item);
    return SelectValue(grid);
  }
  if (item != nullptr && HasOpenBox(*item) && !besideValue_) return PressInValue(*item, key);
  if (key == Key::enter) return PressDialogButton(CommandButton::Role::acceptsDialog);
  if (besideValue_ && key != Key::up && key != Key::down) return;
  if (key == Key::del) return PressDelete(grid);
  MoveToRow(grid, key);
}

void HeadlessUser::PressInValue(PropertyGridItem& item, Key key) {
  PropertyGrid& grid = item.Grid();
  if (key == Key::enter) return SelectValue(grid);  // does not press the dialog's button
  if (item.Kind() == ItemKind::list && (key == Key::up || key == Key::down || !TakesText(item))) {
    const int now = ChosenRow(item);
    const int next = NextChoice(key, now, item.Choices().size());
    if (next == now) return;
    ChooseValue(item, *item.Choices()[static_cast<std::size_t>(next)]);
    return SelectValue(grid);
  }
  const auto stroke =
      StrokeOf(key, value_, valueSize_, value_.start > 0, value_.start < valueSize_);
  if (!stroke) return MoveToRow(grid, key);
  if (!stroke->typed)
    value_ = stroke->part;
  else if (stroke->part.length > 0 || !stroke->typed->empty())
    EditSelectedValue(item, stroke->part, *stroke->typed);
}

void HeadlessUser::EditSelectedValue(PropertyGridItem& item, Part replaced,
                                     std::string_view typed) {
  typed = OneLine(typed);
  const std::size_t added = CharacterCount(typed);
  const bool atEnd = replaced.length == 0 && replaced.start == valueSize_;
  valueSize_ += added - replaced.length;
  value_ = {replaced.start + added, 0};
  const CountUp editing(editsValue_);
  if (atEnd) {
    AppendToValue(item, typed);
  } else {
    std::string text = ToText(item.Value());
    const std::size_t begin = CharacterOffset(text, replaced.start);
    const std::size_t end = CharacterOffset(text, replaced.start + replaced.length);
    text.replace(begin, end - begin, typed);
    EditValue(item, text);
  }
}

void HeadlessUser::SelectValue(const PropertyGrid& grid) {
  const PropertyGridItem* item = grid.SelectedItem();
  valueSize_ = item == nullptr ? 0 : CharacterCount(ToText(item->Value()));
  value_ = {0, valueSize_};
  besideValue_ = false;
}

void HeadlessUser::MoveToRow(PropertyGrid& grid, Key key) {
  const int rows = static_cast<int>(grid.Items().size());
  const int steps = key == Key::up     ? -1
                    : key == Key::down ? 1
                    : key == Key::home ? -rows
                    : key == Key::end  ? rows
                                       : 0;
  PropertyGridItem* next = NextRow(grid, steps);
  if (steps == 0 || next == nullptr) return;
  FormRenderer::SelectItem(grid, next);
  SelectValue(grid);
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
  if (dynamic_cast<Timer*>(&control) != nullptr) Cannot(control, "is not visible");
  FocusByMouse(control);
  if (auto* button = dynamic_cast<CommandButton*>(&control)) return FormRenderer::Click(*button);
  if (auto* check = dynamic_cast<CheckBox*>(&control)) return FormRenderer::Click(*check);
  if (auto* option = dynamic_cast<OptionButton*>(&control)) return FormRenderer::Click(*option);
  if (auto* box = dynamic_cast<EditBox*>(&control); box && !IsClosedList(control))
    return Select(*box, box->TextLength(), 0);
}

void HeadlessUser::DoubleClick(Grid& grid, std::size_t row) {
  SelectRows(grid, {row});
  FormRenderer::DoubleClick(grid);
}

void HeadlessUser::Choose(ComboBox& box, int row) {
  MustBeReachable(box);
  if (row < 0 || row >= static_cast<int>(box.Rows().size()))
    Cannot(box, "has no row " + std::to_string(row));
  FocusByMouse(box);
  FormRenderer::Choose(box, row);
}

void HeadlessUser::SelectTab(TabControl& tabs, std::size_t tab) {
  MustBeReachable(tabs);
  if (tab >= tabs.Controls().size()) Cannot(tabs, "has no such tab");
  const MouseDown down(platform_);
  FormRenderer::SelectTab(tabs, tab);
}

void HeadlessUser::SelectRows(Grid& grid, std::vector<std::size_t> rows) {
  MustBeReachable(grid);
  for (const std::size_t row : rows)
    if (row >= grid.RowCount()) Cannot(grid, "has no row " + std::to_string(row));
  FocusByMouse(grid);
  FormRenderer::SelectRows(grid, std::move(rows));
}

void HeadlessUser::SelectItem(PropertyGridItem& item) {
  FocusByMouse(item.Grid());
  FormRenderer::SelectItem(item.Grid(), &item);
  SelectValue(item.Grid());
}

void HeadlessUser::ClickButton(PropertyGridItem& item) {
  MustBeReachable(item.Grid());
  if (!HasButton(item)) Cannot(item.Grid(), "the row \"" + item.Caption() + "\" has no button");
  if (!item.Enabled()) Cannot(item.Grid(), "the row \"" + item.Caption() + "\" is disabled");
  SelectItem(item);
  PropertyGrid& grid = item.Grid();
  FormRenderer::ClickButton(item);
  SelectValue(grid);
}

void HeadlessUser::Choose(PropertyGridItem& item, std::string_view choice) {
  SelectItem(item);
  for (const auto& candidate : item.Choices())
    if (candidate->Caption() == choice) {
      ChooseValue(item, *candidate);
      return SelectValue(item.Grid());
    }
  Cannot(item.Grid(),
         "the row \"" + item.Caption() + "\" has no choice \"" + std::string(choice) + '"');
}

void HeadlessUser::CloseWindow() { FormRenderer::CloseWindow(); }

void HeadlessUser::Tick(Timer& timer) {
  if (!timer.IsRunning()) Cannot(timer, "is not running");
  FormRenderer::Tick(timer);
}

}  // namespace kvo
