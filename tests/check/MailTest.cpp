// Rules for pages that are sent as mail.
#include <gtest/gtest.h>

#include <filesystem>

#include "document/check/MailRules.h"
#include "tests/check/CheckTesting.h"

namespace kvo::check {
namespace {

page::Problems Mail(const std::string& text) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  return CheckMail(page::Page(text));
}
std::vector<std::string> RulesOf(const page::Problems& problems) {
  std::vector<std::string> rules;
  for (const page::Problem& problem : problems) rules.emplace_back(problem.rule);
  return rules;
}
using List = std::vector<std::string>;

const std::string kUnsubscribe =
    Control("DTCUnsubscriber", {{"recipient", "a"}, {"site", "https://b/"}});
std::string Whole(const std::string& body, const std::string& title = "<title>T</title>") {
  return "<html lang=de>" + title + "<body>" + body + kUnsubscribe + "</body></html>";
}

std::string FileText(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

TEST(MailRules, AreSilentAboutTheStarters) {
  const std::filesystem::path examples = KVO_SOURCE_DIR "/examples";
  std::size_t count = 0;
  for (const char* folder : {"templates", "newsletter"})
    for (const auto& entry : std::filesystem::directory_iterator(examples / folder)) {
      if (entry.path().extension() != ".html") continue;
      ++count;
      for (const page::Problem& problem : Mail(FileText(entry.path())))
        ADD_FAILURE() << page::Describe(problem, entry.path().string(), Language::english);
    }
  EXPECT_EQ(count, 5U);
}
TEST(MailRules, AreSilentAboutPagesWithoutContent) {
  EXPECT_EQ(RulesOf(Mail("")), List{});
  EXPECT_EQ(RulesOf(Mail("<!DOCTYPE html>\n<html>\n<head>\n<meta charset=\"utf-8\">\n"
                         "<title></title>\n</head>\n<body>\n\n</body>\n</html>\n")),
            List{});
}
TEST(MailRules, TellWhatAWholePageLacks) {
  EXPECT_EQ(RulesOf(Mail("<html><body>x")), (List{"mail-unsubscribe", "mail-lang", "mail-title"}));
  EXPECT_EQ(RulesOf(Mail("<body>x")), (List{"mail-unsubscribe", "mail-title"}));
  EXPECT_EQ(RulesOf(Mail("<p>x")), List{}) << "a part of a page";
  EXPECT_EQ(RulesOf(Mail(Whole("x"))), List{});
}
TEST(MailRules, WantNoUnsubscribeLinkInOrderMails) {
  for (const std::string body :
       {"#order.Number#", "<kv:order field=\"Number\"/>", "<KV:PositionList />",
        "<a href=\"https://a/Abmelden\">x</a>", "<a href='mailto:a?subject=UNSUBSCRIBE'>x</a>"})
    EXPECT_EQ(RulesOf(Mail("<html lang=de><title>x</title><body>" + body)), List{}) << body;
}
TEST(MailRules, ComplainAboutSizesBeyond102KBOfThePublishedPage) {
  const std::string text(101 * 1024, 'x');
  EXPECT_EQ(RulesOf(Mail(text + "<!--" + std::string(1'020, 'y') + "-->")), List{"mail-size"});
  EXPECT_EQ(RulesOf(Mail(text)), List{});
  // The comments of saved controls are not published.
  std::string spans;
  for (int i = 0; i < 10; ++i)
    spans += "<!--KVO CONTROL STARTSPAN 1 " +
             Control("DTCPrint", {{"value", "x"}, {"format", ""}}) +
             "--><kv:print value=\"x\"/><!--KVO CONTROL ENDSPAN 1-->";
  EXPECT_EQ(RulesOf(Mail(text + spans)), List{});
}
TEST(MailRules, LookIntoBlocksButNotIntoComments) {
  EXPECT_EQ(RulesOf(Mail("<!-- <img><a href=''></a> --><style><img></style>")), List{});
  const auto problems =
      Mail("<p>\n" +
           Control("DTCElement", {{"value", "td"},
                                  {"html-content", "kv:@lt;img src=kv:@quot;akv:@quot;kv:@gt;"}}) +
           "\n<img>");
  ASSERT_EQ(RulesOf(problems), (List{"mail-alt", "mail-alt"}));
  EXPECT_EQ(problems[0].control, "DTCElement");
  EXPECT_EQ(problems[0].place, (page::Place{2, 1}));
  EXPECT_EQ(problems[1].control, "");
  EXPECT_EQ(problems[1].place, (page::Place{3, 1}));
}
TEST(MailRules, MarkTheTagInThePage) {
  const std::string text = "\xC3\xA4" + Control("DTCPrint", {{"value", "long enough"}}) +
                           "<p><A HREF=http://a>x</a>" + Control("DTCPrint", {{"value", "x"}}) +
                           "<IMG src=x>";
  const auto problems = Mail(text);
  ASSERT_EQ(RulesOf(problems), (List{"mail-insecure-link", "mail-alt"}));
  const auto marked = [&](const page::Problem& problem) {
    return text.substr(problem.offset, problem.end - problem.offset);
  };
  EXPECT_EQ(marked(problems[0]), "<A HREF=http://a>");
  EXPECT_EQ(marked(problems[1]), "<IMG src=x>");
}
TEST(MailRules, SurviveUnfinishedPages) {
  for (const std::string text : {"<", "<a", "<a href", "<!--", "<title>", "<script><a href=''>",
                                 "<!--KVO BLOCKLEVEL ELEMENT "
                                 "STARTSPAN<kv:click href=''",
                                 "</", "<body></body"})
    EXPECT_LE(Mail(text).size(), 2U) << text;
}

}  // namespace
}  // namespace kvo::check
