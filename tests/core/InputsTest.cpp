// What users see of properties: captions, help and the values on offer.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "host/registration/classes.h"
#include "tests/core/TestPlatform.h"

namespace kvo {
namespace {

class InputsTest : public testing::Test {
 protected:
  // Calls `visit` for each property that users see.
  template <class Visit>
  static void ForEachInput(const Visit& visit) {
    for (const RegisteredControl& registered : RegisteredControls())
      for (const PropertyRow& row : registered.contract().properties) {
        if (row.type == PropertyType::object) continue;
        SCOPED_TRACE(std::string(registered.contract().name) + '.' + std::string(row.name));
        visit(registered.contract(), row);
      }
  }

  TestPlatform platform_;
  PlatformScope scope_{platform_};
};

TEST_F(InputsTest, EveryPropertyHasACaptionAndOneLineOfHelpInBothLanguages) {
  ForEachInput([](const ControlClass&, const PropertyRow& row) {
    EXPECT_EQ(row.input.property, row.name);
    for (const Language language : {Language::german, Language::english}) {
      const std::string_view caption = row.input.caption.In(language);
      const std::string_view help = row.input.help.In(language);
      EXPECT_FALSE(caption.empty());
      EXPECT_LE(caption.size(), 30U) << caption;
      EXPECT_FALSE(help.empty());
      EXPECT_LE(help.size(), 85U) << help;
      EXPECT_EQ(help.find('\n'), std::string_view::npos);
      EXPECT_NE(help.back(), '.');
    }
  });
}

TEST_F(InputsTest, CaptionsTellAClassesPropertiesApart) {
  for (const RegisteredControl& registered : RegisteredControls())
    for (const Language language : {Language::german, Language::english}) {
      std::set<std::string_view> captions;
      for (const PropertyRow& row : registered.contract().properties)
        if (row.type != PropertyType::object) {
          EXPECT_TRUE(captions.insert(row.input.caption.In(language)).second)
              << registered.contract().name << ": " << row.input.caption.In(language);
        }
    }
}

TEST_F(InputsTest, OnlyTheFramesPropertiesAreAdvanced) {
  ForEachInput([](const ControlClass&, const PropertyRow& row) {
    EXPECT_EQ(row.input.advanced, row.id <= 3);
  });
}

TEST_F(InputsTest, KindsFitTheirProperties) {
  ForEachInput([](const ControlClass& contract, const PropertyRow& row) {
    const InputKind kind = row.input.kind;
    const bool lists = kind == InputKind::list || kind == InputKind::openList;
    EXPECT_EQ(row.input.choices != nullptr, lists);
    EXPECT_TRUE(row.type == PropertyType::text || kind == InputKind::ofType || lists);
    EXPECT_FALSE(row.type == PropertyType::flag && lists);
    EXPECT_TRUE(kind != InputKind::officeField || contract.FindProperty("DisplayValue"));
  });
}

TEST_F(InputsTest, EveryChoiceIsAValueOfItsProperty) {
  int lists = 0;
  ForEachInput([&lists](const ControlClass& contract, const PropertyRow& row) {
    if (row.input.choices == nullptr) return;
    ++lists;
    const std::vector<Choice> choices = row.input.choices();
    EXPECT_GT(choices.size(), 3U);
    const auto control = contract.create();
    for (const Choice& choice : choices) {
      EXPECT_FALSE(choice.caption.german.empty());
      EXPECT_FALSE(choice.caption.english.empty());
      control->Let(row.name, choice.value);
      EXPECT_EQ(ToText(control->Get(row.name)), ToText(choice.value));
    }
  });
  EXPECT_EQ(lists, 12);
}

}  // namespace
}  // namespace kvo
