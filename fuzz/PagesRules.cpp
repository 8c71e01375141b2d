#include "fuzz/PagesRules.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "common/forms/PropertyFrame.h"
#include "common/text/modGlobal.h"
#include "common/values/RuntimeError.h"
#include "fuzz/Demand.h"
#include "fuzz/PageStory.h"
#include "fuzz/StoryBag.h"
#include "fuzz/UserEvents.h"
#include "host/registration/classes.h"
#include "host/script/HeadlessUser.h"
#include "tests/pages/PageRules.h"
#include "tests/pages/PropertyObject.h"

namespace kvo {
namespace {

std::vector<std::string> TextsOf(Object& collection) {
  std::vector<std::string> texts;
  ForEach(collection, [&](const Variant& element) { texts.push_back(ToText(element)); });
  return texts;
}

constexpr std::string_view kList = "AttributesCollection";

// A control's properties as plain values. Applying a page to them gives the expected result without
// the control.
class PropertyValues final : public PropertyObject {
 public:
  explicit PropertyValues(Control& control) : PropertyObject(Of(control)) {}

  // Demands that the control has these values. Deliberate: content written by a page was encoded
  // again on the way, which drops CDATA markers.
  void DemandHeldBy(Control& control, const std::string& page) const {
    for (const auto& [name, value] : All()) {
      if (name == kList) {
        Demand(TextsOf(*ToObject(value)) == TextsOf(*ToObject(control.Get(kList))),
               page + " changed the attributes");
        continue;
      }
      if (name == "Attributes" && All().contains(kList)) continue;  // the same value again
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

class Conversation final : public PageStory {
 public:
  using PageStory::PageStory;

 private:
  std::unique_ptr<FormUser> MakeUser(Form& form) override {
    return std::make_unique<HeadlessUser>(Platform(), form);
  }

  void Loaded() override { stored_ = StoredBy(*Subject()); }
  void Opened() override { DemandUntouched("showing a page"); }
  void Acted(Form& form, char, const std::string&) override {
    if (!Table().gone) DemandSoundForm(form);
  }
  // Only a failure of the database may lack a number.
  void Threw(const std::exception& error) override {
    if (dynamic_cast<const RuntimeError*>(&error) != nullptr) return;
    Demand(Table().gone, std::string("an error without a number: ") + error.what());
  }
  void Performed(char) override {
    DemandUntouched("an event before it was applied");
    Demand(ApplyEnabled() == Frame().CanApply(),
           "the Apply button does not match the state of the pages");
  }
  void Cancelled() override {
    Demand(IsClosed() && !Frame().IsOpen(), "the frame is still open");
    DemandUntouched("cancelling");
  }

  void DemandUntouched(const std::string& what) {
    Demand(StoredBy(*Subject()) == stored_, what + " changed the control");
  }

  void Apply() override {
    std::vector<std::size_t> changed;
    for (std::size_t tab = 0; tab < Frame().PageCount(); ++tab)
      if (Frame().IsFilled(tab) && Frame().Page(tab).Changed()) changed.push_back(tab);
    const int errors = Errors();
    const bool applied = Frame().Apply();
    Demand(applied == (errors == Errors()),
           "a failure is not shown, or a success is shown as a failure");
    Demand(applied != Frame().CanApply(),
           "Apply is enabled after success or disabled after failure");
    if (changed.empty() || (!applied && changed.size() == 1)) DemandUntouched("applying in vain");
    stored_ = StoredBy(*Subject());
    if (!applied) return;
    for (const std::size_t tab : changed) Frame().Page(tab).Apply();
    DemandUntouched("applying a second time");
    for (const std::size_t tab : changed) Reopen(PageNames()[tab]);
  }

  // Opens another frame on the same control and applies it without an edit.
  void Reopen(const std::string& name) {
    const bool gone = std::exchange(Table().gone, false);
    const std::int32_t state = std::exchange(Connection().state, 1);
    PropertyValues values(*Subject());
    const auto page = CreatePage(name);
    try {
      page->Select({Subject()});
      DemandUntouched("reopening " + name);
      page->Apply();
      PageRules(values, Office()).Apply(name);
    } catch (const RuntimeError&) {
      DemandUntouched("the failed page " + name);
    }
    values.DemandHeldBy(*Subject(), name);
    stored_ = StoredBy(*Subject());
    Table().gone = gone;
    Connection().state = state;
  }

  std::vector<MemoryBag::Entry> stored_;  // what the control must store
};

}  // namespace

void CheckPages(std::string_view story) { Conversation(story).Play(); }

}  // namespace kvo
