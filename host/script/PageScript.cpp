#include "host/script/PageScript.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "common/frame/Office.h"
#include "common/text/modGlobal.h"
#include "common/values/RuntimeError.h"
#include "host/script/HeadlessUser.h"
#include "host/script/ScriptWords.h"

namespace kvo {
namespace {

// --- messages -----------------------------------------------------------------------------------

[[noreturn]] void Fail(const Localized& message,
                       std::initializer_list<std::string_view> texts = {}) {
  throw ScriptTrouble(Filled(message, texts));
}

// A failure of the page during a command: its number (0 without one) and text.
struct PageFailure {
  int number;
  Message message;
};

PageFailure FailureOf(const std::exception& error) {
  const auto* numbered = dynamic_cast<const RuntimeError*>(&error);
  return {numbered == nullptr ? 0 : numbered->Number(), FailureMessage(error)};
}

std::size_t ToNumber(const std::string& word) {
  std::size_t number = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
  if (error != std::errc() || end != word.data() + word.size())
    Fail({"„{}“ ist keine Zahl.", "\"{}\" is not a number."}, {word});
  return number;
}

struct NamedKey {
  std::string_view name;
  Key key;
};
constexpr NamedKey kKeys[] = {
    {"tab", Key::tab},     {"shift-tab", Key::shiftTab},
    {"enter", Key::enter}, {"escape", Key::escape},
    {"space", Key::space}, {"backspace", Key::backspace},
    {"delete", Key::del},  {"home", Key::home},
    {"end", Key::end},     {"left", Key::left},
    {"right", Key::right}, {"up", Key::up},
    {"down", Key::down},   {"select-all", Key::selectAll},
};

std::string Shown(const StateValue& value) {
  if (const auto* flag = std::get_if<bool>(&value)) return *flag ? "yes" : "no";
  if (const auto* number = std::get_if<int>(&value)) return std::to_string(*number);
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  std::string list;
  for (const std::string& item : std::get<std::vector<std::string>>(value))
    list += (list.empty() ? "\"" : " \"") + item + '"';
  return list;
}

// --- running a script ---------------------------------------------------------------------------

class ScriptRun final : private PropertyFrame::Window {
 public:
  ScriptRun(ScriptStage& stage, std::string_view script) : stage_(stage) {
    for (std::size_t at = 0; at <= script.size();) {
      const std::size_t end = std::min(script.find('\n', at), script.size());
      lines_.push_back(script.substr(at, end - at));
      at = end + 1;
    }
    formerModal_ = std::move(stage_.platform.whileModal);
    stage_.platform.whileModal = [this](Form& form) { RunDialog(form); };
  }
  ScriptRun(const ScriptRun&) = delete;
  ScriptRun& operator=(const ScriptRun&) = delete;
  ~ScriptRun() override { stage_.platform.whileModal = std::move(formerModal_); }

  ScriptOutcome Run() {
    while (!Ended()) Step();
    if (!outcome_.failure) Guarded(lines_.size(), [this] { LoadNewControl(); });
    return Outcome();
  }

 private:
  using Words = std::span<const std::string>;
  struct Command {
    std::string_view name;
    std::size_t least;  // words after the name
    std::size_t most;
    void (ScriptRun::*perform)(Words);
    bool actsOnFrame = false;
  };
  static std::span<const Command> Commands();

  bool Ended() const { return outcome_.failure || next_ == lines_.size(); }

  void Step() {
    const std::string_view line = lines_[next_++];
    Guarded(next_, [&] {
      const std::vector<std::string> words = SplitWords(line);
      if (!words.empty()) Perform(words);
    });
  }

  template <class Work>
  void Guarded(std::size_t line, const Work& work) {
    try {
      work();
    } catch (const ScriptTrouble& trouble) {
      Stop(line, trouble.What());
    } catch (const PageFailure& failure) {
      const std::string number = failure.number ? ' ' + std::to_string(failure.number) : "";
      Stop(line, {"Fehler" + number + ": " + failure.message.german,
                  "Error" + number + ": " + failure.message.english});
    }
  }

  void Stop(std::size_t line, Message message) {
    if (!outcome_.failure) outcome_.failure = ScriptFailure{line, std::move(message)};
  }

  void Perform(Words words) {
    if (words[0] == "fails") return ExpectFailure(words);
    for (const Command& command : Commands()) {
      if (command.name != words[0]) continue;
      if (words.size() - 1 < command.least || words.size() - 1 > command.most)
        Fail({"„{}“ hat zu viele oder zu wenige Angaben.",
              "\"{}\" has too many or too few arguments."},
             {words[0]});
      // The page that opened the dialog is still inside its event.
      if (command.actsOnFrame && !dialogs_.empty())
        Fail({"„{}“ geht nicht, solange ein Dialog offen ist.",
              "\"{}\" is not possible while a dialog is open."},
             {words[0]});
      if (command.name != "bag") LoadNewControl();
      reported_.reset();
      try {
        (this->*command.perform)(words.subspan(1));
      } catch (const CannotDo& error) {
        Fail({"Das geht so nicht: {}", "That can't be done: {}"}, {error.what()});
      } catch (const std::exception& error) {
        throw FailureOf(error);
      }
      if (reported_) throw *std::exchange(reported_, std::nullopt);
      return;
    }
    LoadNewControl();
    if (!stage_.command || !stage_.command(words))
      Fail({"Den Befehl „{}“ gibt es nicht.", "There is no command \"{}\"."}, {words[0]});
  }

  // fails NUMBER COMMAND...: expects the command to fail with that number, or "any".
  void ExpectFailure(Words words) {
    if (words.size() < 3)
      Fail({"„fails“ braucht Nummer und Befehl.", "\"fails\" needs a number and a command."});
    try {
      Perform(words.subspan(2));
    } catch (const PageFailure& failure) {
      if (words[1] == "any" || words[1] == std::to_string(failure.number)) return;
      throw;
    }
    Fail({"Das hätte mit Fehler {} scheitern sollen.", "That should have failed with error {}."},
         {words[1]});
  }

  // --- controls ---

  void ControlCommand(Words words) {
    newName_ = words[0];
    newControl_ = stage_.newControl ? stage_.newControl(words[1]) : nullptr;
    if (newControl_ == nullptr)
      Fail({"Die Klasse „{}“ gibt es nicht.", "There is no class \"{}\"."}, {words[1]});
  }

  void BagCommand(Words words) {
    if (newControl_ == nullptr)
      Fail({"„bag“ steht nur hinter „control“.", "\"bag\" is only allowed after \"control\"."});
    newBag_.emplace_back(words[0], words[1]);
  }

  void LoadNewControl() {
    if (newControl_ == nullptr) return;
    const auto control = std::exchange(newControl_, nullptr);
    MemoryBag bag(std::exchange(newBag_, {}));
    try {
      control->ReadProperties(bag);
    } catch (const std::exception& error) {
      throw FailureOf(error);
    }
    stage_.controls[newName_] = control;
  }

  const std::shared_ptr<Control>& ControlNamed(const std::string& name) {
    const auto found = stage_.controls.find(name);
    if (found == stage_.controls.end())
      Fail({"Ein Control „{}“ gibt es nicht.", "There is no control \"{}\"."}, {name});
    return found->second;
  }

  std::vector<ObjectRef> Objects(Words names) {
    std::vector<ObjectRef> objects;
    for (const std::string& name : names) {
      const auto& control = ControlNamed(name);
      GiveOffice(*control, stage_.office);
      objects.emplace_back(control);
    }
    return objects;
  }

  // --- the property frame ---

  void OpenCommand(Words words) {
    opened_.assign(words.begin(), words.end());
    OpenFrame();
  }
  void ReopenCommand(Words) {
    if (opened_.empty()) Fail({"Es war noch nichts offen.", "Nothing has been opened yet."});
    OpenFrame();
  }
  void OpenFrame() {
    CloseForms();
    std::vector<ObjectRef> objects = Objects(opened_);
    pageNames_ = objects.front()->PropertyPages().value_or(std::vector<std::string>());
    if (pageNames_.empty())
      Fail({"„{}“ hat keine Eigenschaftsseiten.", "\"{}\" has no property pages."}, {opened_[0]});
    StartFrame(std::move(objects));
  }
  void StartFrame(std::vector<ObjectRef> objects) {
    Window& window = *this;
    frame_ = std::make_unique<PropertyFrame>(window, std::move(objects), pageNames_, stage_.pages);
    outcome_.frameOpen = true;
    shown_.assign(pageNames_.size(), false);
    ShowTab(0);
  }
  void CloseForms() {
    users_.clear();
    frame_.reset();
    if (outcome_.frameOpen) outcome_.frameOpen = false;
  }

  void PageCommand(Words words) {
    auto found = std::find(pageNames_.begin(), pageNames_.end(), words[0]);
    if (frame_ != nullptr && found == pageNames_.end()) {
      // Any page can be shown for any object, even if the object does not name it.
      std::vector<ObjectRef> objects = Objects(opened_);
      CloseForms();
      pageNames_ = {words[0]};
      return StartFrame(std::move(objects));
    }
    OpenedFrame();
    ShowTab(static_cast<std::size_t>(found - pageNames_.begin()));
  }
  void ShowTab(std::size_t tab) {
    shown_[tab] = true;
    frame_->Show(tab);
  }
  PropertyFrame& OpenedFrame() {
    if (frame_ == nullptr || !frame_->IsOpen())
      Fail({"Es ist keine Seite offen: „open NAME“ öffnet sie.",
            "No page is open: use \"open NAME\" first."});
    return *frame_;
  }
  void SelectCommand(Words words) {
    OpenedFrame().Select(Objects(words));
    opened_.assign(words.begin(), words.end());
  }
  void ApplyCommand(Words) { OpenedFrame().Apply(); }
  void OkCommand(Words) { OpenedFrame().Ok(); }
  void CancelCommand(Words) { OpenedFrame().Cancel(); }

  void ApplyEnabledChanged() override {}
  void ShowError(PropertyPage&, const std::exception& error) override {
    reported_ = FailureOf(error);
  }
  void Closed() override { outcome_.frameOpen = false; }

  // --- forms ---

  void RunDialog(Form& form) {
    dialogs_.push_back(&form);
    while (!Ended() && form.IsLoaded()) Step();
    users_.erase(&form);
    dialogs_.pop_back();
  }

  Form& Current() {
    if (!dialogs_.empty()) return *dialogs_.back();
    return OpenedFrame().Page(frame_->ShownTab());
  }
  FormUser& User() {
    Form& form = Current();
    if (dialogs_.empty() && !frame_->IsFilled(frame_->ShownTab()))
      Fail({"Die Seite konnte nicht gefüllt werden; auf ihr lässt sich nichts tun.",
            "The page could not be filled; nothing can be done on it."});
    auto& user = users_[&form];
    if (user == nullptr)
      user =
          stage_.user ? stage_.user(form) : std::make_unique<HeadlessUser>(stage_.platform, form);
    return *user;
  }

  // NAME, or NAME(2) for the third control of that name.
  FormControl& Named(std::string name) {
    std::size_t index = 0;
    if (const std::size_t bracket = name.find('('); bracket != std::string::npos) {
      index = ToNumber(name.substr(bracket + 1, name.size() - bracket - 2));
      name.resize(bracket);
    }
    if (FormControl* control = Current().Find(name, index)) return *control;
    Fail({"Auf der Seite gibt es kein „{}“.", "There is no \"{}\" on the page."}, {name});
  }
  template <class Kind>
  Kind& As(const std::string& name) {
    if (auto* control = dynamic_cast<Kind*>(&Named(name))) return *control;
    Fail({"„{}“ ist dafür nicht die richtige Art.", "\"{}\" is not of the right kind for this."},
         {name});
  }
  // Finds a row by its key, its caption or its number.
  PropertyGridItem& Row(const std::string& grid, const std::string& row) {
    const auto& items = As<PropertyGrid>(grid).Items();
    for (const auto& item : items)
      if (!item->Key().empty() && item->Key() == row) return *item;
    for (const auto& item : items)
      if (item->Caption() == row) return *item;
    if (row.starts_with('#')) {
      const std::size_t number = ToNumber(row.substr(1));
      if (number < items.size()) return *items[number];
    }
    Fail({"„{}“ hat keine Zeile „{}“.", "\"{}\" has no row \"{}\"."}, {grid, row});
  }

  void FocusCommand(Words words) { User().FocusByKeyboard(Named(words[0])); }
  void CaretCommand(Words words) { User().ClickInto(As<EditBox>(words[0]), ToNumber(words[1])); }
  void TypeCommand(Words words) { User().Type(words[0]); }
  void PressCommand(Words words) {
    for (const std::string& word : words) {
      const auto* named = std::find_if(std::begin(kKeys), std::end(kKeys),
                                       [&](const NamedKey& each) { return each.name == word; });
      if (named == std::end(kKeys))
        Fail({"Die Taste „{}“ gibt es nicht.", "There is no key \"{}\"."}, {word});
      User().Press(named->key);
    }
  }
  void ClickCommand(Words words) { User().Click(Named(words[0])); }
  void ChooseCommand(Words words) {
    if (words.size() == 3) return User().Choose(Row(words[0], words[1]), words[2]);
    User().Choose(As<ComboBox>(words[0]), words[1]);
  }
  void TabCommand(Words words) {
    auto& tabs = As<TabControl>(words[0]);
    for (std::size_t tab = 0; tab < tabs.Controls().size(); ++tab)
      if (tabs.Controls()[tab]->Caption() == words[1]) return User().SelectTab(tabs, tab);
    Fail({"„{}“ hat keinen Reiter „{}“.", "\"{}\" has no tab \"{}\"."}, {words[0], words[1]});
  }
  void RowCommand(Words words) { User().SelectItem(Row(words[0], words[1])); }
  void ButtonCommand(Words words) { User().ClickButton(Row(words[0], words[1])); }
  void RowsCommand(Words words) {
    std::vector<std::size_t> rows;
    for (const std::string& word : words.subspan(1)) rows.push_back(ToNumber(word));
    User().SelectRows(As<Grid>(words[0]), std::move(rows));
  }
  void DoubleClickCommand(Words words) {
    User().DoubleClick(As<Grid>(words[0]), ToNumber(words[1]));
  }
  void TickCommand(Words words) {
    const std::size_t times = words.size() > 1 ? ToNumber(words[1]) : 1;
    for (std::size_t time = 0; time < times; ++time) User().Tick(As<Timer>(words[0]));
  }
  void CloseWindowCommand(Words) { User().CloseWindow(); }

  // --- answers to dialogs ---

  void AnswerCommand(Words words) { stage_.platform.promptAnswers.emplace_back(words[0]); }
  void NoAnswerCommand(Words) { stage_.platform.promptAnswers.emplace_back(std::nullopt); }
  void ColorCommand(Words words) {
    std::array<std::uint8_t, 3> parts{};
    if (!ParseColor(words[0], parts[0], parts[1], parts[2]))
      Fail({"„{}“ ist keine Farbe wie #FF8000.", "\"{}\" is not a colour such as #FF8000."},
           {words[0]});
    stage_.platform.colorAnswers.emplace_back(parts[0] + parts[1] * 0x100 + parts[2] * 0x10000);
  }
  void NoColorCommand(Words) { stage_.platform.colorAnswers.emplace_back(std::nullopt); }

  // --- expectations ---

  void ExpectCommand(Words words) {
    const std::string& what = words[0];
    if (what == "page") return ExpectPage(words.subspan(1));
    if (what == "frame") return ExpectFrame(words.subspan(1));
    if (what == "bag") return ExpectBag(words.subspan(1));
    if (what == "runtime") {
      NeedWords(words, 3);
      return Same(words[2], ControlNamed(words[1])->GetRuntimeText());
    }
    if (what == "focus") {
      NeedWords(words, 2);
      const FormControl* focused = Current().Focused();
      return Same(words[1], focused ? std::string(focused->Name()) : "");
    }
    if (what == "prompt") {
      NeedWords(words, 3);
      const auto& prompts = stage_.platform.prompts;
      return Same(words[1] + " / " + words[2],
                  prompts.empty() ? "" : prompts.back().prompt + " / " + prompts.back().title);
    }
    if (what == "preset") {
      NeedWords(words, 2);
      const auto& presets = stage_.platform.colorPresets;
      return Same(words[1], presets.empty() ? "" : '#' + ColorToHex(presets.back()));
    }
    ExpectControl(words);
  }

  // CONTROL VALUE-NAME EXPECTED..., or CONTROL/ROW VALUE-NAME EXPECTED...
  void ExpectControl(Words words) {
    if (words.size() < 2) NeedWords(words, 3);
    const std::size_t slash = words[0].find('/');
    ControlState state = StateOf(Named(words[0].substr(0, slash)));
    if (slash != std::string::npos) {
      const std::string part = words[0].substr(slash + 1);
      auto found = std::find_if(state.parts.begin(), state.parts.end(),
                                [&](const ControlState& each) { return each.name == part; });
      if (found == state.parts.end() && part.starts_with('#')) {
        const std::size_t number = ToNumber(part.substr(1));
        if (number < state.parts.size())
          found = state.parts.begin() + static_cast<std::ptrdiff_t>(number);
      }
      if (found == state.parts.end()) {
        if (words[1] == "missing") return;
        Fail({"„{}“ hat keine Zeile „{}“.", "\"{}\" has no row \"{}\"."}, {state.name, part});
      }
      state = ControlState(*found);
    }
    if (words[1] == "parts") {
      NeedWords(words, 3);
      return Same(words[2], std::to_string(state.parts.size()));
    }
    const StateValue* value = state.Find(words[1]);
    if (value == nullptr)
      Fail({"„{}“ hat keine Angabe „{}“.", "\"{}\" has no value \"{}\"."}, {words[0], words[1]});
    if (std::holds_alternative<std::vector<std::string>>(*value))
      return Same(Shown(std::vector<std::string>(words.begin() + 2, words.end())), Shown(*value));
    NeedWords(words, 3);
    Same(words[2], Shown(*value));
  }
  void ExpectPage(Words words) {
    NeedWords(words, 2);
    const auto& page = OpenedFrame().Page(frame_->ShownTab());
    if (words[0] == "changed") return Same(words[1], page.Changed() ? "yes" : "no");
    if (words[0] == "caption") return Same(words[1], Current().Caption());
    if (words[0] == "class") return Same(words[1], pageNames_[frame_->ShownTab()]);
    NoSuchValue("page", words[0]);
  }
  void ExpectFrame(Words words) {
    NeedWords(words, 2);
    const bool open = frame_ != nullptr && frame_->IsOpen();
    if (words[0] == "open") return Same(words[1], open ? "yes" : "no");
    if (words[0] == "apply") return Same(words[1], open && frame_->CanApply() ? "yes" : "no");
    NoSuchValue("frame", words[0]);
  }
  // NAME KEY VALUE, or NAME KEY to expect that the key is not stored.
  void ExpectBag(Words words) {
    if (words.size() < 2) NeedWords(words, 3);
    MemoryBag bag;
    ControlNamed(words[0])->WriteProperties(bag);
    const auto& entries = bag.Entries();
    const auto entry =
        std::find_if(entries.begin(), entries.end(),
                     [&](const MemoryBag::Entry& each) { return each.first == words[1]; });
    if (words.size() == 2) {
      if (entry == entries.end()) return;
      Fail({"Der Schlüssel „{}“ ist gespeichert, als „{}“.", "The key \"{}\" is stored as \"{}\"."},
           {words[1], entry->second});
    }
    if (entry == entries.end())
      Fail({"Der Schlüssel „{}“ ist nicht gespeichert.", "The key \"{}\" is not stored."},
           {words[1]});
    Same(words[2], entry->second);
  }

  void NeedWords(Words words, std::size_t count) {
    if (words.size() != count)
      Fail({"„expect {}“ hat zu viele oder zu wenige Angaben.",
            "\"expect {}\" has too many or too few arguments."},
           {words.empty() ? "" : words[0]});
  }
  [[noreturn]] static void NoSuchValue(const std::string& of, const std::string& name) {
    Fail({"„{}“ hat keine Angabe „{}“.", "\"{}\" has no value \"{}\"."}, {of, name});
  }
  static void Same(std::string_view expected, std::string_view found) {
    if (expected != found)
      Fail({"Erwartet ist „{}“, gefunden „{}“.", "Expected \"{}\", found \"{}\"."},
           {std::string(expected), std::string(found)});
  }

  // --- the end ---

  ScriptOutcome Outcome() {
    if (frame_ != nullptr) {
      outcome_.canApply = frame_->IsOpen() && frame_->CanApply();
      for (std::size_t tab = 0; tab < pageNames_.size(); ++tab) {
        if (!shown_[tab]) continue;
        const PropertyPage& page = frame_->Page(tab);
        outcome_.pages.push_back({pageNames_[tab], std::string(page.Caption()),
                                  frame_->IsFilled(tab), page.Changed(), StateOf(page)});
      }
    }
    return std::move(outcome_);
  }

  ScriptStage& stage_;
  std::vector<std::string_view> lines_;
  std::size_t next_ = 0;
  std::function<void(Form&)> formerModal_;
  ScriptOutcome outcome_;

  std::string newName_;
  std::shared_ptr<Control> newControl_;
  std::vector<MemoryBag::Entry> newBag_;

  std::vector<std::string> opened_;
  std::vector<std::string> pageNames_;
  std::vector<bool> shown_;
  std::unique_ptr<PropertyFrame> frame_;
  std::map<Form*, std::unique_ptr<FormUser>> users_;  // destroyed before their forms
  std::vector<Form*> dialogs_;
  std::optional<PageFailure> reported_;
};

constexpr std::size_t kAny = 1000;
constexpr bool kOnFrame = true;

std::span<const ScriptRun::Command> ScriptRun::Commands() {
  static constexpr Command commands[] = {
      // name, fewest and most words after it
      {"control", 2, 2, &ScriptRun::ControlCommand},
      {"bag", 2, 2, &ScriptRun::BagCommand},
      {"open", 1, kAny, &ScriptRun::OpenCommand, kOnFrame},
      {"reopen", 0, 0, &ScriptRun::ReopenCommand, kOnFrame},
      {"page", 1, 1, &ScriptRun::PageCommand, kOnFrame},
      {"select", 1, kAny, &ScriptRun::SelectCommand, kOnFrame},
      {"apply", 0, 0, &ScriptRun::ApplyCommand, kOnFrame},
      {"ok", 0, 0, &ScriptRun::OkCommand, kOnFrame},
      {"cancel", 0, 0, &ScriptRun::CancelCommand, kOnFrame},
      {"focus", 1, 1, &ScriptRun::FocusCommand},
      {"caret", 2, 2, &ScriptRun::CaretCommand},
      {"type", 1, 1, &ScriptRun::TypeCommand},
      {"press", 1, kAny, &ScriptRun::PressCommand},
      {"click", 1, 1, &ScriptRun::ClickCommand},
      {"choose", 2, 3, &ScriptRun::ChooseCommand},
      {"tab", 2, 2, &ScriptRun::TabCommand},
      {"row", 2, 2, &ScriptRun::RowCommand},
      {"button", 2, 2, &ScriptRun::ButtonCommand},
      {"rows", 1, kAny, &ScriptRun::RowsCommand},
      {"double-click", 2, 2, &ScriptRun::DoubleClickCommand},
      {"tick", 1, 2, &ScriptRun::TickCommand},
      {"close-window", 0, 0, &ScriptRun::CloseWindowCommand},
      {"answer", 1, 1, &ScriptRun::AnswerCommand},
      {"no-answer", 0, 0, &ScriptRun::NoAnswerCommand},
      {"color", 1, 1, &ScriptRun::ColorCommand},
      {"no-color", 0, 0, &ScriptRun::NoColorCommand},
      {"expect", 2, kAny, &ScriptRun::ExpectCommand},
  };
  return commands;
}

}  // namespace

ScriptOutcome RunPageScript(ScriptStage& stage, std::string_view script) {
  return ScriptRun(stage, script).Run();
}

}  // namespace kvo
