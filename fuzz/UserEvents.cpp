#include "fuzz/UserEvents.h"

#include <algorithm>
#include <map>
#include <set>
#include <vector>

#include "common/values/RuntimeError.h"
#include "fuzz/Demand.h"
#include "host/script/FormState.h"

namespace kvo {
namespace {

constexpr std::size_t kFurthest = 40;  // limit for caret positions and rows in events

// Returns the control of type Kind that the story selects.
template <class Kind>
Kind& ReadControl(const Form& form, Bytes& story) {
  std::vector<Kind*> controls;
  for (FormControl* control : form.AllControls())
    if (auto* one = dynamic_cast<Kind*>(control)) controls.push_back(one);
  if (controls.empty()) throw CannotDo("there is no such control");
  return *controls[story.Below(controls.size())];
}

PropertyGridItem& ReadItem(const Form& form, Bytes& story) {
  auto& grid = ReadControl<PropertyGrid>(form, story);
  if (grid.Items().empty()) throw CannotDo("the grid is empty");
  return *grid.Items()[story.Below(grid.Items().size())];
}

std::string ReadChoice(const PropertyGridItem& item, Bytes& story) {
  if (item.Choices().empty()) return "none";
  return item.Choices()[story.Below(item.Choices().size())]->Caption();
}

std::vector<std::size_t> ReadRows(Bytes& story) {
  std::vector<std::size_t> rows(story.Below(5));
  for (std::size_t& row : rows) row = story.Below(kFurthest);
  // A second click would deselect a row.
  std::ranges::sort(rows);
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  return rows;
}

// Whether the desktop decides what the key does. In a text box, up and down depend on where its
// font wraps lines. Desktops also differ in data grids, closed lists, and lists whose text matches
// no row.
bool IsTheDesktops(FormControl& focused, Key key) {
  const bool upOrDown = key == Key::up || key == Key::down;
  const bool leftOrRight = key == Key::left || key == Key::right;
  const bool homeOrEnd = key == Key::home || key == Key::end;
  if (dynamic_cast<TextBox*>(&focused) != nullptr) return upOrDown;
  if (const auto* list = dynamic_cast<ComboBox*>(&focused))
    return (list->ListIndex() == kNoRow && (upOrDown || (!list->Editable() && homeOrEnd))) ||
           (!list->Editable() && (leftOrRight || key == Key::space));
  if (const auto* grid = dynamic_cast<PropertyGrid*>(&focused)) {
    const PropertyGridItem* item = grid->SelectedItem();
    if (item == nullptr || item->Kind() != ItemKind::list) return false;
    return (upOrDown && GetSelectedChoice(*item) == nullptr) ||
           (!item->Editable() && (leftOrRight || key == Key::space));
  }
  const bool leaves =
      key == Key::tab || key == Key::shiftTab || key == Key::enter || key == Key::escape;
  return dynamic_cast<Grid*>(&focused) != nullptr && !leaves;
}

void DemandDefined(const Form& form, Key key) {
  if (form.Focused() != nullptr && IsTheDesktops(*form.Focused(), key))
    throw CannotDo("the desktop decides what this key does");
}

void Perform(char event, Form& form, FormUser& user, Bytes& story) {
  switch (event) {
    case 'f':
      return user.FocusByKeyboard(ReadControl<FormControl>(form, story));
    case 'i': {
      auto& box = ReadControl<EditBox>(form, story);
      return user.ClickInto(box, story.Below(kFurthest));
    }
    case 't': {
      const std::string text = story.Text();
      if (text.starts_with(' ')) DemandDefined(form, Key::space);
      return user.Type(text);
    }
    case 'k': {
      const auto key = static_cast<Key>(story.Below(static_cast<int>(Key::selectAll) + 1));
      DemandDefined(form, key);
      return user.Press(key);
    }
    case 'c': {
      auto& control = ReadControl<FormControl>(form, story);
      if (dynamic_cast<PropertyGrid*>(&control) || dynamic_cast<Grid*>(&control) ||
          dynamic_cast<TabControl*>(&control))
        throw CannotDo("click one of its rows or tabs instead");
      return user.Click(control);
    }
    case 'o': {
      auto& box = ReadControl<ComboBox>(form, story);
      return user.Choose(box, static_cast<int>(story.Below(kFurthest)));
    }
    case 'r': {
      auto& grid = ReadControl<Grid>(form, story);
      return user.SelectRows(grid, ReadRows(story));
    }
    case 'd': {
      auto& grid = ReadControl<Grid>(form, story);
      return user.DoubleClick(grid, story.Below(kFurthest));
    }
    case 's':
      return user.SelectItem(ReadItem(form, story));
    case 'b':
      return user.ClickButton(ReadItem(form, story));
    case 'v': {
      PropertyGridItem& item = ReadItem(form, story);
      return user.Choose(item, ReadChoice(item, story));
    }
    case 'x': {
      auto& tabs = ReadControl<TabControl>(form, story);
      user.FocusByKeyboard(tabs);  // only some desktops move the focus on a click
      return user.SelectTab(tabs, story.Below(kFurthest));
    }
    case 'm':
      return user.Tick(ReadControl<Timer>(form, story));
    default:
      return user.CloseWindow();
  }
}

class SoundControl {
 public:
  void operator()(Label&) {}
  void operator()(TextBox& box) { DemandSelectionInside(box); }
  void operator()(ComboBox& box) {
    DemandSelectionInside(box);
    const int row = box.ListIndex();
    Demand(row >= kNoRow && row < static_cast<int>(box.Rows().size()),
           "the chosen row is not in the list");
    if (row != kNoRow)
      Demand(box.Text() == box.Rows()[static_cast<std::size_t>(row)].text,
             "the text differs from the chosen row");
    else
      Demand(box.Editable() || box.Text().empty(), "a closed list has a text without a chosen row");
    std::set<std::string> keys;
    for (const ComboBox::Row& listed : box.Rows())
      Demand(!listed.key || keys.insert(*listed.key).second, "two rows have the same key");
  }
  void operator()(CheckBox&) {}
  void operator()(OptionButton& button) {
    if (button.Value())
      Demand(++chosen_[&button.Parent()] == 1, "two options of one group are chosen");
  }
  void operator()(CommandButton&) {}
  void operator()(Frame&) {}
  void operator()(PictureBox&) {}
  void operator()(TabControl& tabs) {
    Demand(tabs.SelectedTab() < tabs.Controls().size(), "the open tab does not exist");
  }
  void operator()(TabPanel&) {}
  void operator()(PropertyGrid& grid) {
    if (const PropertyGridItem* selected = grid.SelectedItem())
      Demand(std::ranges::find(grid.Items(), selected, &std::unique_ptr<PropertyGridItem>::get) !=
                 grid.Items().end(),
             "the selected row is not in the grid");
  }
  void operator()(Grid& grid) {
    const auto& rows = grid.SelectedRows();
    Demand(std::ranges::is_sorted(rows), "the selected records are out of order");
    Demand(std::ranges::adjacent_find(rows) == rows.end(), "a record is selected twice");
    Demand(rows.empty() || rows.back() < grid.RowCount(), "a selected record does not exist");
  }
  void operator()(Timer&) {}

 private:
  static void DemandSelectionInside(const EditBox& box) {
    Demand(box.SelStart() + box.SelLength() <= CharacterCount(box.Text()),
           "the selection extends past the text");
  }

  std::map<const Container*, int> chosen_;
};

}  // namespace

std::string PerformEvent(char event, Form& form, FormUser& user, Bytes& story) {
  try {
    Perform(event, form, user, story);
    return "done";
  } catch (const RuntimeError& error) {
    return "error " + std::to_string(error.Number());
  } catch (const CannotDo&) {
    return "cannot be done";
  }
}

void DemandSoundForm(const Form& form) {
  SoundControl sound;
  for (FormControl* control : form.AllControls()) WithKind(*control, sound);
  if (const FormControl* focused = form.Focused()) {
    Demand(focused->TakesFocus(), "the focused control cannot take the focus");
    const auto all = form.AllControls();
    Demand(std::ranges::find(all, focused) != all.end(), "the focus is on another form");
  }
  Demand(StateOf(form).size() == form.AllControls().size(), "a control's state is missing");
}

}  // namespace kvo
