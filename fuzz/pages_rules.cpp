#include "fuzz/pages_rules.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "common/PropertyFrame.h"
#include "common/RuntimeError.h"
#include "common/modGlobal.h"
#include "fuzz/Demand.h"
#include "fuzz/StoryBag.h"
#include "fuzz/UserEvents.h"
#include "host/registration/classes.h"
#include "tests/forms/FakeRecordset.h"
#include "tests/pages/FakeOffice.h"
#include "tests/pages/PageRules.h"
#include "tests/pages/PropertyObject.h"

namespace kvo {
namespace {

constexpr int kMostEvents = 300;

std::vector<std::string> TextsOf(Object& collection) {
  std::vector<std::string> texts;
  ForEach(collection, [&](const Variant& element) { texts.push_back(ToText(element)); });
  return texts;
}

constexpr std::string_view kList = "AttributesCollection";

// A control's properties as mere values: what a page's own rules make of them can be worked out
// here, without the control.
class PropertyValues final : public PropertyObject {
 public:
  explicit PropertyValues(Control& control) : PropertyObject(Of(control)) {}

  // Whether the control holds these. Content that a page wrote was encoded anew on the way, which
  // drops CDATA markers: deliberate.
  void DemandHeldBy(Control& control, const std::string& page) const {
    for (const auto& [name, value] : All()) {
      if (name == kList) {
        Demand(TextsOf(*ToObject(value)) == TextsOf(*ToObject(control.Get(kList))),
               page + " changed the attributes");
        continue;
      }
      if (name == "Attributes" && All().contains(kList)) continue;  // the same once more
      const std::string held = ToText(control.Get(name));
      const std::string expected = ToText(value);
      Demand(held == expected || held == DecodeMarkupTokens(EncodeMarkupTokens(expected)),
             page + " changed " + name + " from \"" + expected + "\" to \"" + held + '"');
    }
  }

 private:
  static Properties Of(Control& control) {
    Properties values;
    for (const PropertyRow& row : control.Class().properties)
      if (row.type != PropertyType::object || row.name == kList)
        values.emplace(row.name, control.Get(row.name));
    return values;
  }
};

class Conversation final : private PropertyFrame::Window {
 public:
  explicit Conversation(std::string_view bytes) : story_(bytes) {
    for (const char* name : {"EMAIL", "a&b", "EMAIL", ""}) {
      office_->contactFields.push_back({name, "Name von " + std::string(name), 0});
      office_->orderFields.push_back({name, "Bestellung " + std::string(name), 1});
    }
    for (std::int32_t type = 0; type <= 7; ++type)
      office_->contactFields.push_back({"F" + std::to_string(type), "Feld", type});
    table_.rows = {{{"ProductNo", "100"}, {"Desc1", "Tee"}, {"Desc2", "grün"}},
                   {{"ProductNo", "2,0"}, {"Desc1", Variant()}, {"Desc2", ""}},
                   {{"ProductNo", Variant()}, {"Desc1", "ohne"}, {"Desc2", ""}},
                   {{"ProductNo", "300"}, {"Desc1", "Kanne"}, {"Desc2", "Ton"}}};
    office_->connection = connection_;
    platform_.recordsets = [this] { return std::make_shared<FakeRecordset>(table_); };
    platform_.whileModal = [this](Form& form) { PlayDialog(form); };
  }

  void Play() {
    if (!LoadControl()) return;
    PropertyFrame frame(*this, "Eigenschaften", {control_}, pages_, CreatePage);
    frame_ = &frame;
    std::vector<std::unique_ptr<HeadlessUser>> users;
    for (std::size_t tab = 0; tab < frame.PageCount(); ++tab)
      users.push_back(std::make_unique<HeadlessUser>(platform_, frame.Page(tab)));
    if (users.empty()) return;
    frame.Show(0);
    DemandUntouched("showing a page");
    while (!Over()) PlayEvent(*users[frame.ShownTab()]);
    users.clear();
    frame.Cancel();
    Demand(closed_ && !frame.IsOpen(), "the frame is still open");
    DemandUntouched("cancelling");
  }

 private:
  // --- the frame's window ---
  void ApplyEnabledChanged() override { applyEnabled_ = !applyEnabled_; }
  void ShowError(PropertyPage&, const std::exception& error) override {
    DemandExpected(error);
    ++errors_;
  }
  void Closed() override { closed_ = true; }

  bool LoadControl() {
    const ControlClass& contract = ReadClass(story_);
    const auto all = RegisteredPages();
    if (const std::size_t page = story_.Below(all.size() + 1); page == 0)
      pages_.assign(contract.pages.begin(), contract.pages.end());
    else
      pages_ = {std::string(all[page - 1].name)};
    story_.Skip('\n');
    StoryBag bag(story_, contract);
    control_ = contract.create();
    try {
      control_->ReadProperties(bag);
    } catch (const RuntimeError&) {
      return false;
    }
    if (contract.FindProperty("Office")) control_->Let("Office", ObjectRef(office_));
    stored_ = StoredBy(*control_);
    return true;
  }

  ColorNumber ReadColor() {
    ColorNumber color = 0;
    for (int part = 0; part < 3; ++part)
      color = color * 256 + static_cast<ColorNumber>(story_.Below(256));
    return color;
  }

  bool Over() { return story_.AtEnd() || ++events_ > kMostEvents; }

  // A failure of the database is the database's; everything else is numbered.
  void DemandExpected(const std::exception& error) const {
    if (dynamic_cast<const RuntimeError*>(&error) != nullptr) return;
    Demand(table_.gone, std::string("an error without a number: ") + error.what());
  }

  void DemandUntouched(const std::string& what) const {
    Demand(StoredBy(*control_) == stored_, what + " changed the control");
  }

  void Act(char event, Form& form, HeadlessUser& user) {
    try {
      PerformEvent(event, form, user, story_);
    } catch (const std::logic_error&) {
      throw;
    } catch (const std::exception& error) {
      DemandExpected(error);
    }
    if (!table_.gone) DemandSoundForm(form);
  }

  void PlayDialog(Form& form) {
    HeadlessUser user(platform_, form);
    while (form.IsLoaded() && !Over()) Act(story_.OneOf(kUserEvents), form, user);
  }

  void PlayEvent(HeadlessUser& user) {
    switch (const char event = story_.OneOf("fitkcordsbvxmwAPSGCNF")) {
      case 'A':
        Apply();
        break;
      case 'P':
        frame_->Show(story_.Below(frame_->PageCount()));
        break;
      case 'S':
        frame_->Select({control_});
        break;
      case 'G':
        table_.gone = !table_.gone;
        break;
      case 'C':
        connection_->state = 1 - connection_->state;
        break;
      case 'N':
        platform_.promptAnswers.emplace_back(story_.Text());
        break;
      case 'F':
        platform_.colorAnswers.emplace_back(ReadColor());
        break;
      default:
        Act(event, frame_->Page(frame_->ShownTab()), user);
    }
    DemandUntouched("an event before it was applied");
    Demand(applyEnabled_ == frame_->CanApply(), "the apply button is not what the pages are");
  }

  void Apply() {
    std::vector<std::size_t> changed;
    for (std::size_t tab = 0; tab < frame_->PageCount(); ++tab)
      if (frame_->IsFilled(tab) && frame_->Page(tab).Changed()) changed.push_back(tab);
    const int errors = errors_;
    const bool applied = frame_->Apply();
    Demand(applied == (errors == errors_), "a failure is not shown, or there was none");
    Demand(applied != frame_->CanApply(), "what was applied is still to be applied, or is not");
    if (changed.empty() || (!applied && changed.size() == 1)) DemandUntouched("a page in vain");
    stored_ = StoredBy(*control_);
    if (!applied) return;
    for (const std::size_t tab : changed) frame_->Page(tab).Apply();
    DemandUntouched("applying a second time");
    for (const std::size_t tab : changed) Reopen(pages_[tab]);
  }

  // Another frame on the same control, applied without an edit.
  void Reopen(const std::string& name) {
    const bool gone = std::exchange(table_.gone, false);
    const std::int32_t state = std::exchange(connection_->state, 1);
    PropertyValues values(*control_);
    const auto page = CreatePage(name);
    try {
      page->Select({control_});
      DemandUntouched("reopening " + name);
      page->Apply();
      PageRules(values, *office_).Apply(name);
    } catch (const RuntimeError&) {
      DemandUntouched(name + " in vain");
    }
    values.DemandHeldBy(*control_, name);
    stored_ = StoredBy(*control_);
    table_.gone = gone;
    connection_->state = state;
  }

  Bytes story_;
  HeadlessPlatform platform_;
  PlatformScope scope_{platform_};
  FakeTable table_;
  std::shared_ptr<FakeConnection> connection_ = std::make_shared<FakeConnection>();
  std::shared_ptr<FakeOffice> office_ = std::make_shared<FakeOffice>();
  std::shared_ptr<Control> control_;
  std::vector<MemoryBag::Entry> stored_;  // by the control, as it has to be
  std::vector<std::string> pages_;
  PropertyFrame* frame_ = nullptr;
  bool applyEnabled_ = false;
  bool closed_ = false;
  int errors_ = 0;
  int events_ = 0;
};

}  // namespace

void CheckPages(std::string_view story) { Conversation(story).Play(); }

}  // namespace kvo
