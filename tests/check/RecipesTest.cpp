// Tests docs/recipes.md: what it warns about is refused, and what it recommends is accepted and
// published as it says.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>

#include "document/check/Check.h"
#include "host/headless/HeadlessPlatform.h"

namespace kvo::check {
namespace {

std::vector<std::string> Snippets() {
  std::ifstream file(KVO_SOURCE_DIR "/docs/recipes.md", std::ios::binary);
  const std::string document{std::istreambuf_iterator<char>(file), {}};
  std::vector<std::string> snippets;
  constexpr std::string_view kFence = "```html\n";
  for (std::size_t at = 0; (at = document.find(kFence, at)) != std::string::npos;) {
    at += kFence.size();
    snippets.push_back(document.substr(at, document.find("\n```", at) - at));
  }
  return snippets;
}

TEST(Recipes, AreRefusedAcceptedAndPublishedAsDocumented) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  const std::vector<std::string> snippets = Snippets();
  ASSERT_GE(snippets.size(), 24U);
  ASSERT_EQ(snippets.size() % 3, 0U);
  for (std::size_t i = 0; i < snippets.size(); i += 3) {
    const page::Page refused(snippets[i]);
    const page::Page accepted(snippets[i + 1]);
    const page::Problems problems = CheckPage(refused, nullptr);
    EXPECT_NE(std::ranges::find(problems, page::rule::misplacedControl, &page::Problem::rule),
              problems.end())
        << snippets[i];
    for (const page::Problem& problem : CheckPage(accepted, nullptr))
      ADD_FAILURE() << snippets[i + 1] << "\n"
                    << page::Describe(problem, "recipe", Language::english);
    page::StringSink sink;
    EXPECT_TRUE(page::Publish(accepted, sink).empty());
    EXPECT_EQ(sink.Text(), snippets[i + 2]);
  }
}

// The tag that a message suggests matches the one in the recipe.
TEST(Recipes, ShowTheTagThatTheMessageSuggests) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  const std::vector<std::string> snippets = Snippets();
  int offered = 0;
  for (std::size_t i = 0; i < snippets.size(); i += 3) {
    const page::Problems problems = page::Check(page::Page(snippets[i]));
    ASSERT_FALSE(problems.empty());
    const std::string& message = problems[0].message.english;
    const std::size_t tag = message.find("this instead: ");
    ASSERT_NE(tag, std::string::npos) << message;
    if (snippets[i + 1].find(message.substr(tag + 14)) != std::string::npos) ++offered;
  }
  EXPECT_EQ(offered, 3);  // attribute by hand, title, conditional comment
}

}  // namespace
}  // namespace kvo::check
