// Makes the n-th allocation fail, for every n: either std::bad_alloc is thrown or the work succeeds
// anyway, nothing leaks, controls and pages are unchanged, and a second try succeeds.
#include <gtest/gtest.h>

#include <functional>
#include <iostream>
#include <new>

#include "common/values/RuntimeError.h"
#include "document/check/Check.h"
#include "document/office/Office.h"
#include "document/page/Page.h"
#include "host/headless/HeadlessPlatform.h"
#include "host/registration/classes.h"
#include "tests/faults/memory/Allocations.h"

namespace kvo::test {
namespace {

using page::Page;

// Too long for a string's internal buffer.
const std::string kLong = "a value that is too long to be held inside of a string, & then \"some\"";

// Returns a control's element, with values that need allocations.
std::string ElementOf(const ControlClass& contract, int number) {
  std::vector<MemoryBag::Entry> bag;
  for (const PropertyRow& row : contract.bag) {
    if (row.readDefault.empty() && row.key != "attributes") bag.emplace_back(row.key, kLong);
    if (row.key == "attributes")
      bag.emplace_back(row.key, "title|the title of a cell in a table||align|right");
  }
  return page::ElementText(contract, "The control with the number " + std::to_string(number), bag);
}

// Returns a page with every class, both as elements and as saved spans.
std::string PageOfAllClasses() {
  std::string text = "<!DOCTYPE html><html><head><meta charset=\"utf-8\"></head><body>\r\n";
  int number = 0;
  for (const RegisteredControl& registered : RegisteredControls())
    text += "<p>" + ElementOf(registered.contract(), ++number) + "</p>\r\n";
  page::StringSink saved;
  EXPECT_FALSE(page::HasErrors(page::Save(Page(text), saved)));
  return saved.Text() + text + "</body></html>";
}

class Memory : public ::testing::Test {
 protected:
  // Repeats the work, failing one allocation after the other, until all have failed once. `work`
  // returns its result; `isAsBefore` is called after each failure.
  void WithEachAllocationFailing(
      const std::function<std::string()>& work,
      const std::function<bool()>& isAsBefore = [] { return true; }) {
    const std::string expected = work();  // also creates what is cached
    for (long number = 1;; ++number) {
      const long live = LiveAllocations();
      bool failed = false;
      bool same = true;
      {
        const FailingAllocation failure(number);
        try {
          same = work() == expected;
        } catch (const std::bad_alloc&) {
          failed = true;
        }
      }
      const long left = LiveAllocations() - live;
      const bool happened = FailingAllocation::Happened();
      ASSERT_EQ(left, 0) << "leaked with allocation " << number << " failing";
      ASSERT_TRUE(same) << "result changed with allocation " << number << " failing";
      ASSERT_FALSE(failed && !happened);
      if (!happened) break;
      failures_ += failed;
      ++allocations_;
      ASSERT_TRUE(isAsBefore()) << "changed with allocation " << number << " failing";
    }
    ASSERT_EQ(work(), expected);
  }

  ~Memory() override {
    std::cout << allocations_ << " allocations failed, " << failures_ << " of them threw\n";
  }

  int allocations_ = 0;
  int failures_ = 0;

 private:
  // Makes the same identifier in every run.
  class Platform final : public HeadlessPlatform {
    GuidText NewGuid() override {
      GuidText guid;
      guid.characters.fill('0');
      return guid;
    }
  };

  Platform platform_;
  PlatformScope scope_{platform_};
};

std::string TextOf(const page::Problems& problems) {
  std::string text;
  for (const page::Problem& problem : problems)
    text += page::Describe(problem, "x.html", Language::english) + '\n';
  return text;
}

TEST_F(Memory, SavingAndPublishing) {
  const std::string bytes = PageOfAllClasses();
  const Page page(bytes);
  const auto same = [&] { return page.Bytes() == bytes; };
  WithEachAllocationFailing(
      [&] {
        page::StringSink sink;
        const std::string told = TextOf(page::Save(page, sink));
        return told + sink.Text();
      },
      same);
  if (HasFatalFailure()) return;
  WithEachAllocationFailing(
      [&] {
        page::StringSink sink;
        const std::string told = TextOf(page::Publish(page, sink));
        return told + sink.Text();
      },
      same);
  EXPECT_GT(failures_, 200);
}

TEST_F(Memory, ReadingAPageAndChangingOneControl) {
  const std::string bytes = PageOfAllClasses();
  const page::Edit edit{3, [](Control& control) { control.Let("Namespace", kLong); }};
  WithEachAllocationFailing([&] {
    const Page page(bytes);
    page::StringSink sink;
    const std::string told = TextOf(page::Save(page, sink, {.edit = &edit}));
    return told + sink.Text();
  });
  EXPECT_GT(failures_, 200);
}

TEST_F(Memory, InspectingAndChecking) {
  const Page page(PageOfAllClasses() + "<object classid=\"progid:KVOPDesignObjects.DTCPrnt\">");
  WithEachAllocationFailing([&] {
    const page::Inspection inspection = page::Inspect(page);
    std::string text = TextOf(inspection.problems);
    for (const page::FoundControl& found : inspection.controls)
      for (const auto& [key, value] : found.bag) text += key + '=' + value + '\n';
    return text;
  });
  if (HasFatalFailure()) return;
  const auto office = std::make_shared<office::Office>(
      office::Office::Description{{{kLong, kLong, 0}}, {{kLong, kLong, 0}}, {}});
  for (const RegisteredControl& registered : RegisteredControls()) {
    const Page one(ElementOf(registered.contract(), 1) + "#customer.X#<kv:order field='X'/>");
    SCOPED_TRACE(registered.contract().name);
    WithEachAllocationFailing([&] { return TextOf(check::CheckPage(one, office)); });
    if (HasFatalFailure()) return;
  }
  EXPECT_GT(failures_, 200);
}

std::string StateOf(const Control& control) {
  std::string text;
  for (const auto& [key, value] : page::StoredBag(control)) text += key + '=' + value + '\n';
  return text + control.GetRuntimeText();
}

// Returns a control of each class, loaded from the page of all classes.
std::vector<std::shared_ptr<Control>> AllControls() {
  std::vector<std::shared_ptr<Control>> controls;
  const Page page(PageOfAllClasses());
  for (const page::FoundControl& found : page::Inspect(page).controls)
    if (found.form == page::Form::span) controls.push_back(page::Load(*found.contract, found.bag));
  EXPECT_EQ(controls.size(), RegisteredControls().size());
  return controls;
}

TEST_F(Memory, LoadingStoringAndRuntimeTextOfEachClass) {
  for (const std::shared_ptr<Control>& control : AllControls()) {
    SCOPED_TRACE(control->Class().name);
    const std::vector<MemoryBag::Entry> bag = page::StoredBag(*control);
    const std::string state = StateOf(*control);
    WithEachAllocationFailing([&] { return StateOf(*page::Load(control->Class(), bag)); });
    if (HasFatalFailure()) return;
    WithEachAllocationFailing([&] { return StateOf(*control); },
                              [&] { return StateOf(*control) == state; });
    if (HasFatalFailure()) return;
  }
  EXPECT_GT(failures_, 200);
}

Variant OtherValue(const PropertyRow& row) {
  switch (row.type) {
    case PropertyType::flag:
      return true;
    case PropertyType::integer:
      return 7;
    default:
      return kLong + "|one value more||" + kLong + "|another one";
  }
}

// A setter that fails changes nothing.
TEST_F(Memory, SettingEachPropertyOfEachClass) {
  int set = 0;
  for (const std::shared_ptr<Control>& control : AllControls()) {
    const ControlClass& contract = control->Class();
    const std::vector<MemoryBag::Entry> bag = page::StoredBag(*control);
    const std::string before = StateOf(*control);
    for (const PropertyRow& row : contract.properties) {
      SCOPED_TRACE(std::string(contract.name) + '.' + std::string(row.name));
      if (row.type == PropertyType::object) continue;
      const Variant value = OtherValue(row);
      std::shared_ptr<Control> fresh = page::Load(contract, bag);
      fresh->Let(row.name, value);
      const std::string after = StateOf(*fresh);
      for (long number = 1;; ++number) {
        fresh = page::Load(contract, bag);
        const long live = LiveAllocations();
        bool failed = false;
        Variant passed = value;
        {
          const FailingAllocation failure(number);
          try {
            fresh->Let(row.name, std::move(passed));
          } catch (const std::bad_alloc&) {
            failed = true;
          }
        }
        const bool happened = FailingAllocation::Happened();
        if (failed) {
          ++failures_;
          passed = Variant();
          ASSERT_EQ(LiveAllocations(), live) << "leaked with allocation " << number << " failing";
        }
        ASSERT_EQ(StateOf(*fresh), failed ? before : after) << number;
        allocations_ += happened;
        if (!happened) break;
      }
      ++set;
    }
  }
  EXPECT_GT(set, 60);
  EXPECT_GT(failures_, 10);
}

// Proves that the tests above detect a leak and a change.
TEST_F(Memory, DetectsALeak) {
  const long live = LiveAllocations();
  const auto kept = std::make_unique<std::string>(kLong);
  EXPECT_EQ(LiveAllocations(), live + 2);
  const FailingAllocation failure(2);
  EXPECT_NO_THROW(delete new int);
  EXPECT_THROW(delete new int, std::bad_alloc);
  EXPECT_TRUE(FailingAllocation::Happened());
  EXPECT_NO_THROW(delete new int);
}

}  // namespace
}  // namespace kvo::test
