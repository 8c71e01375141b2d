#include "tests/stories/Performance.h"

#include <map>
#include <utility>

#include "fuzz/StoryBag.h"
#include "host/script/FormState.h"
#include "host/script/HeadlessUser.h"

namespace kvo {
namespace {

std::string Quoted(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string quoted = "\"";
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (character == '"' || character == '\\')
      (quoted += '\\') += character;
    else if (byte < ' ')
      ((quoted += "\\x") += kDigits[byte >> 4U]) += kDigits[byte & 15U];
    else
      quoted += character;
  }
  return quoted + '"';
}

// Records in words what a user does.
class TellingUser final : public FormUser {
 public:
  TellingUser(std::unique_ptr<FormUser> user, std::string& told)
      : user_(std::move(user)), told_(told) {}

  FormUser& Himself() { return *user_; }

  void FocusByKeyboard(FormControl& control) override {
    Tell("focus", control);
    user_->FocusByKeyboard(control);
  }
  void ClickInto(EditBox& box, std::size_t caret) override {
    Tell("click into", box, std::to_string(caret));
    user_->ClickInto(box, caret);
  }
  void Type(std::string_view text) override {
    told_ += "type " + Quoted(text) + "; ";
    user_->Type(text);
  }
  void Press(Key key) override {
    static constexpr std::string_view kNames[] = {"tab",   "shift+tab", "enter", "escape", "space",
                                                  "back",  "delete",    "home",  "end",    "left",
                                                  "right", "up",        "down",  "ctrl+A"};
    told_ += "press " + std::string(kNames[static_cast<std::size_t>(key)]) + "; ";
    user_->Press(key);
  }
  void Click(FormControl& control) override {
    Tell("click", control);
    user_->Click(control);
  }
  void DoubleClick(Grid& grid, std::size_t row) override {
    Tell("double click", grid, std::to_string(row));
    user_->DoubleClick(grid, row);
  }
  void Choose(ComboBox& box, int row) override {
    Tell("choose in", box, std::to_string(row));
    user_->Choose(box, row);
  }
  void SelectTab(TabControl& tabs, std::size_t tab) override {
    Tell("open tab of", tabs, std::to_string(tab));
    user_->SelectTab(tabs, tab);
  }
  void SelectRows(Grid& grid, std::vector<std::size_t> rows) override {
    std::string numbers;
    for (const std::size_t row : rows) numbers += std::to_string(row) + ' ';
    Tell("select in", grid, numbers);
    user_->SelectRows(grid, std::move(rows));
  }
  void SelectItem(PropertyGridItem& item) override {
    Tell("click row of", item);
    user_->SelectItem(item);
  }
  void ClickButton(PropertyGridItem& item) override {
    Tell("click button of", item);
    user_->ClickButton(item);
  }
  void Choose(PropertyGridItem& item, std::string_view choice) override {
    Tell("choose " + Quoted(choice) + " in", item);
    user_->Choose(item, choice);
  }
  void CloseWindow() override {
    told_ += "close the window; ";
    user_->CloseWindow();
  }
  void Tick(Timer& timer) override {
    Tell("tick", timer);
    user_->Tick(timer);
  }

 private:
  void Tell(const std::string& what, const FormControl& at, const std::string& more = {}) {
    told_ += what + ' ' + std::string(at.Name()) + (more.empty() ? "" : ' ' + more) + "; ";
  }
  void Tell(const std::string& what, const PropertyGridItem& item) {
    Tell(what, item.Grid(), Quoted(item.Caption()));
  }

  std::unique_ptr<FormUser> user_;
  std::string& told_;
};

std::string InWords(const StateValue& value) {
  if (const auto* flag = std::get_if<bool>(&value)) return *flag ? "yes" : "no";
  if (const auto* number = std::get_if<int>(&value)) return std::to_string(*number);
  if (const auto* text = std::get_if<std::string>(&value)) return Quoted(*text);
  std::string list = "[";
  for (const std::string& text : std::get<std::vector<std::string>>(value)) list += Quoted(text);
  return list + ']';
}

std::string InWords(const ControlState& state, const std::string& indent) {
  std::string text = indent + state.name + " (" + state.kind + ")";
  for (const auto& [name, value] : state.values)
    (text += ' ') += std::string(name) + '=' + InWords(value);
  text += '\n';
  for (const ControlState& part : state.parts) text += InWords(part, indent + "  ");
  return text;
}

class Performance final : public PageStory {
 public:
  Performance(const std::string& story, const Renderer& renderer)
      : PageStory(story), renderer_(renderer) {}

  std::vector<Step> steps;

 private:
  std::unique_ptr<FormUser> MakeUser(Form& form) override {
    auto user = std::make_unique<TellingUser>(renderer_.user(Platform(), form), told_);
    byForm_[&form] = user.get();
    return user;
  }

  void Opened() override { Note("open " + PageNames()[0]); }
  void Acted(Form& form, char, const std::string& outcome) override {
    Note(std::exchange(told_, {}) + outcome, &form);
  }
  void Threw(const std::exception& error) override { thrown_ += std::string(error.what()) + '\n'; }
  void Performed(char event) override {
    switch (event) {
      case 'A':
        return Note("apply");
      case 'P':
        return Note("show " + PageNames()[Frame().ShownTab()]);
      case 'S':
        return Note("select again");
      case 'G':
        return Note(Table().gone ? "the database goes away" : "the database comes back");
      case 'C':
        return Note("the connection is opened or closed");
      case 'N':
        return Note("the next prompt will be answered");
      case 'F':
        return Note("the next colour dialog will be answered");
      default:
        return;  // noted when it was performed
    }
  }

  void Note(std::string event, Form* dialog = nullptr) {
    Settle(dialog != nullptr ? *dialog : Frame().Page(Frame().ShownTab()));
    std::string state;
    for (std::size_t tab = 0; tab < Frame().PageCount(); ++tab) {
      PropertyPage& page = Frame().Page(tab);
      if (&page == dialog) dialog = nullptr;
      state += PageNames()[tab] + (tab == Frame().ShownTab() ? " shows" : " is hidden") +
               (Frame().IsFilled(tab) ? ", filled" : ", not filled") +
               (page.Changed() ? ", changed\n" : ", not changed\n");
      AddForm(page, state);
      if (tab == Frame().ShownTab()) AddFocus(page, state);
    }
    if (dialog != nullptr) {
      state += dialog->IsLoaded() ? "dialog\n" : "dialog, closed\n";
      AddForm(*dialog, state);
      if (dialog->IsLoaded()) AddFocus(*dialog, state);
    }
    state += ApplyEnabled() ? "frame: something to apply\n" : "frame: nothing to apply\n";
    state += "shown: messages " + std::to_string(Platform().messages.size()) + ", prompts " +
             std::to_string(Platform().prompts.size()) + ", colour dialogs " +
             std::to_string(Platform().colorPresets.size()) + ", errors " +
             std::to_string(Errors()) + '\n';
    state += "thrown: " + Quoted(thrown_) + '\n';
    state += "bag\n";
    for (const auto& [key, value] : StoredBy(*Subject()))
      state += "  " + std::string(key) + '=' + Quoted(value) + '\n';
    steps.push_back({std::move(event), std::move(state)});
  }

  static void AddFocus(const Form& form, std::string& state) {
    const FormControl* focused = form.Focused();
    state += "  focus: " + std::string(focused == nullptr ? "none" : focused->Name()) + '\n';
  }

  void Settle(Form& form) {
    const auto user = byForm_.find(&form);
    if (renderer_.settle && user != byForm_.end()) renderer_.settle(user->second->Himself());
  }

  void AddForm(Form& form, std::string& state) {
    for (FormControl* control : form.AllControls()) {
      // After the database went away, a grid's contents depend on what was read before.
      if (Table().gone && dynamic_cast<Grid*>(control) != nullptr) continue;
      state += InWords(StateOf(*control), "  ");
      if (const auto* list = dynamic_cast<ComboBox*>(control))
        state += "    selection " + std::to_string(list->SelStart()) + ',' +
                 std::to_string(list->SelLength()) + '\n';
    }
    const auto user = byForm_.find(&form);
    if (!renderer_.misshown || Table().gone || user == byForm_.end()) return;
    state += renderer_.misshown(user->second->Himself(), form);
  }

  const Renderer& renderer_;
  std::map<Form*, TellingUser*> byForm_;
  std::string told_;
  std::string thrown_;
};

}  // namespace

const Renderer kHeadless = {
    .user = [](HeadlessPlatform& platform,
               Form& form) { return std::make_unique<HeadlessUser>(platform, form); },
    .settle = {},
    .misshown = {}};

std::vector<Step> Perform(const std::string& story, const Renderer& renderer) {
  Performance performance(story, renderer);
  performance.Play();
  return std::move(performance.steps);
}

}  // namespace kvo
