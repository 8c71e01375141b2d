// Opens every page for every control, with bags of awkward values. Opening must change nothing, and
// applying without an edit must change only what that page's own rules change.
#include <random>

#include "common/frame/Office.h"
#include "host/registration/classes.h"
#include "tests/forms/FakeRecordset.h"
#include "tests/pages/FakeOffice.h"
#include "tests/pages/PageRules.h"
#include "tests/pages/PageTest.h"

namespace kvo {
namespace {

using Bag = std::vector<MemoryBag::Entry>;

Bag StoredBy(const Control& control) {
  MemoryBag bag;
  control.WriteProperties(bag);
  return bag.Entries();
}

class PageSweep : public testing::TestWithParam<std::string_view> {
 protected:
  PageSweep() {
    for (const char* name : {"EMAIL", "a&b"}) {
      office->contactFields.push_back({name, std::string("Name von ") + name, 0});
      office->orderFields.push_back({name, std::string("Name von ") + name, 0});
    }
    office->connection = std::make_shared<FakeConnection>();
    platform.recordsets = [this] { return std::make_shared<FakeRecordset>(table); };
  }

  Bag RandomBag(const ControlClass& contract) {
    static const std::string values[] = {"",
                                         " ",
                                         "a",
                                         "a&b",
                                         "a&amp;b",
                                         "EMAIL",
                                         "\"",
                                         "<b>x</b>",
                                         "kv:@lt;b kv:@gt;",
                                         "kv:@br;",
                                         "\r\n",
                                         "a\r\nb",
                                         "a\nb",
                                         "x|y",
                                         "a|1||b|2",
                                         "||a|1",
                                         "a|b|c",
                                         "a||b",
                                         "%",
                                         "%a%",
                                         "%%",
                                         "100",
                                         "1",
                                         "12",
                                         "5 Pixel",
                                         "12 Punkte",
                                         "EMAIL",
                                         "EMAIL",
                                         "rgb(1,2,3)",
                                         "#FF0000",
                                         "dd.mm.yyyy",
                                         "Primäre Währung",
                                         "0.000",
                                         ",",
                                         "1,2",
                                         "1,1",
                                         "s/",
                                         "s",
                                         "äöü€😀",
                                         "]]>",
                                         "kv:@lt;![CDATA[x",
                                         "Left",
                                         "top",
                                         "yes",
                                         "no",
                                         "true",
                                         "false",
                                         "stretch",
                                         "fill",
                                         std::string("a\0b", 3)};
    std::uniform_int_distribution<std::size_t> pick(0, std::size(values) - 1);
    Bag bag;
    for (const PropertyRow& row : contract.bag)
      if (pick(random) % 4 != 0) bag.emplace_back(row.key, values[pick(random)]);
    return bag;
  }

  // Returns nullptr when the class cannot load the bag.
  std::shared_ptr<Control> Load(const ControlClass& contract, const Bag& entries) {
    const std::shared_ptr<Control> control = contract.create();
    MemoryBag bag(entries);
    try {
      control->ReadProperties(bag);
    } catch (const RuntimeError&) {
      return nullptr;
    }
    GiveOffice(*control, office);
    return control;
  }

  HeadlessPlatform platform;
  PlatformScope scope{platform};
  std::mt19937 random{20040423};
  FakeTable table;
  std::shared_ptr<FakeOffice> office = std::make_shared<FakeOffice>();
};

TEST_P(PageSweep, ApplyingWithoutAnEditOnlyFollowsThePagesOwnRules) {
  int applied = 0;
  for (const RegisteredControl& registered : RegisteredControls()) {
    const ControlClass& contract = registered.contract();
    for (int round = 0; round < 400; ++round) {
      const Bag entries = RandomBag(contract);
      const std::shared_ptr<Control> control = Load(contract, entries);
      if (control == nullptr) continue;
      const Bag before = StoredBy(*control);
      std::string trace = std::string(contract.name) + " with";
      for (const auto& [key, value] : before) trace += " " + key + "=\"" + value + '"';
      SCOPED_TRACE(trace);

      const auto page = CreatePage(GetParam());
      try {
        page->Select({control});
      } catch (const RuntimeError&) {
        EXPECT_EQ(StoredBy(*control), before);
        continue;  // the page is for other objects, or no page can show the control's values
      }
      ASSERT_EQ(StoredBy(*control), before);
      Bag expected = before;
      try {
        page->Apply();
        const std::shared_ptr<Control> ruled = Load(contract, entries);
        PageRules(*ruled, *office).Apply(GetParam());
        expected = StoredBy(*ruled);
        ++applied;
      } catch (const RuntimeError&) {
        // Nothing is chosen on the page, or the control lacks a property: the page writes nothing.
      }
      ASSERT_EQ(StoredBy(*control), expected);
    }
  }
  EXPECT_GT(applied, 10);
}

std::vector<std::string_view> AllPages() {
  std::vector<std::string_view> names;
  for (const RegisteredPage& page : RegisteredPages()) names.push_back(page.name);
  return names;
}

INSTANTIATE_TEST_SUITE_P(AllPages, PageSweep, testing::ValuesIn(AllPages()),
                         [](const auto& parameter) { return std::string(parameter.param); });

}  // namespace
}  // namespace kvo
