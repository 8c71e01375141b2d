#include <gtest/gtest.h>

#include <set>

#include "common/values/RuntimeError.h"
#include "host/headless/HeadlessPlatform.h"
#include "tests/core/ErrorOf.h"

namespace kvo {
namespace {

TEST(TextWidth, IsTheSumOfTahomasAdvancesRoundedUpToWholePixels) {
  // "P", "r", "i", "n" and "t" of the bold font add up to 5014 of 2048 units per em of 11 pixels.
  EXPECT_EQ(TahomaTextWidth("Print", FontWeight::bold), 27 * 15);
  EXPECT_EQ(TahomaTextWidth("Anzeigeformat:", FontWeight::normal), 1110);
  EXPECT_EQ(TahomaTextWidth("", FontWeight::normal), 0);
}

TEST(TextWidth, BoldIsWider) {
  EXPECT_GT(TahomaTextWidth("Bestellung", FontWeight::bold),
            TahomaTextWidth("Bestellung", FontWeight::normal));
}

TEST(TextWidth, MeasuresCharactersNotBytes) {
  EXPECT_EQ(TahomaTextWidth("äöü", FontWeight::normal), TahomaTextWidth("aou", FontWeight::normal));
  EXPECT_EQ(TahomaTextWidth("日", FontWeight::normal), 11 * 15);
  EXPECT_EQ(TahomaTextWidth("👍", FontWeight::normal), 11 * 15);
  EXPECT_EQ(TahomaTextWidth("€", FontWeight::normal), TahomaTextWidth("0", FontWeight::normal));
}

TEST(TextWidth, SurvivesInvalidBytes) {
  EXPECT_GT(TahomaTextWidth("\xC3", FontWeight::normal), 0);
  EXPECT_GT(TahomaTextWidth("\xF0\x9F", FontWeight::normal), 0);
  EXPECT_GT(TahomaTextWidth("\xFF\x80\xC0", FontWeight::normal), 0);
}

TEST(TextWidth, AVeryLongTextDoesNotOverflow) {
  EXPECT_GT(TahomaTextWidth(std::string(50'000'000, 'W'), FontWeight::bold), 0);
}

TEST(HeadlessPlatform, MakesRandomIdentifiersInRegistryForm) {
  HeadlessPlatform platform;
  std::set<std::string> made;
  for (int i = 0; i < 100; ++i) {
    const std::string guid(std::string_view(platform.NewGuid()));
    ASSERT_EQ(guid.size(), 38U);
    for (std::size_t at = 0; at < guid.size(); ++at) {
      const bool hyphen = at == 9 || at == 14 || at == 19 || at == 24;
      const std::string_view allowed = at == 0    ? "{"
                                       : at == 37 ? "}"
                                       : hyphen   ? "-"
                                       : at == 15 ? "4"
                                       : at == 20 ? "89AB"
                                                  : "0123456789ABCDEF";
      EXPECT_NE(allowed.find(guid[at]), std::string_view::npos) << guid << " at " << at;
    }
    made.insert(guid);
  }
  EXPECT_EQ(made.size(), 100U);
}

TEST(HeadlessPlatform, AnswersDialogsFromItsQueuesAndRecordsThem) {
  HeadlessPlatform platform;
  platform.promptAnswers = {"align", std::nullopt};
  EXPECT_EQ(platform.InputPrompt("Name?", "Neu"), "align");
  EXPECT_EQ(platform.InputPrompt("Name?", "Neu"), std::nullopt);
  EXPECT_EQ(platform.prompts.size(), 2U);
  platform.colorAnswers = {255};
  EXPECT_EQ(platform.ChooseColor(7), 255);
  platform.ShowMessage(0, "yo");
  EXPECT_EQ(platform.messages, std::vector<std::string>{"yo"});
}

TEST(HeadlessPlatform, WithNothingQueuedEveryDialogIsCancelled) {
  HeadlessPlatform platform;
  EXPECT_EQ(platform.InputPrompt("Name?", "Neu"), std::nullopt);
  EXPECT_EQ(platform.ChooseColor(7), 7);
}

TEST(HeadlessPlatform, WithoutADatabaseLayerARecordsetCannotBeCreated) {
  HeadlessPlatform platform;
  EXPECT_EQ(ErrorOf([&] { platform.NewRecordset(); }), 429);
}

}  // namespace
}  // namespace kvo
