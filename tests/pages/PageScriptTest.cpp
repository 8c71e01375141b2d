// Runs the scripts of tests/pages/scripts, and tests the runner itself.
#include "host/script/PageScript.h"

#include <algorithm>

#include "tests/pages/PageTest.h"
#include "tests/pages/Theatre.h"

namespace kvo {
namespace {

class Conversation : public testing::TestWithParam<std::string> {};

TEST_P(Conversation, SucceedsAsWritten) {
  const std::string script = ReadScript(GetParam());
  ASSERT_FALSE(script.empty());
  Theatre theatre;
  const ScriptOutcome outcome = theatre.Run(script);
  if (outcome.failure)
    FAIL() << GetParam() << ".txt:" << outcome.failure->line << ": "
           << outcome.failure->message.english;
}

INSTANTIATE_TEST_SUITE_P(Scripts, Conversation, testing::ValuesIn(ScriptNames()),
                         [](const auto& parameter) { return parameter.param; });

TEST(PageScript, EveryPageAndTheDialogHaveAScript) {
  const auto names = ScriptNames();
  for (const RegisteredPage& page : RegisteredPages())
    EXPECT_TRUE(std::binary_search(names.begin(), names.end(), page.name)) << page.name;
  EXPECT_TRUE(std::binary_search(names.begin(), names.end(), "frmExpressionBuilder"));
}

// A script that must stop: the line, and a part of the message.
struct Stopping {
  std::string script;
  std::size_t line;
  std::string message;
};

TEST(PageScript, StopsAtTheWrongLineAndSaysWhy) {
  const Stopping cases[] = {
      {"\n\ntanze", 3, "There is no command \"tanze\"."},
      {"open preis", 1, "There is no control \"preis\"."},
      {"control a DTCNichts", 1, "There is no class \"DTCNichts\"."},
      {"control a", 1, "\"control\" has too many or too few arguments."},
      {"bag value \"x\"", 1, "\"bag\" is only allowed after \"control\"."},
      {"control a DTCPrint\nopen a\ntype \"x", 3, "The quote is not closed."},
      {"control a DTCPrint\nopen a\ntype \"\\x\"", 3, "must be followed by n, r, t, 0"},
      {"control a DTCPrint\nopen a\ntype x", 3, "nothing has the keyboard focus"},
      {"control a DTCPrint\nopen a\nfocus txtNichts", 3, "There is no \"txtNichts\" on the page."},
      {"control a DTCPrint\nopen a\nfocus lblPrintInfo", 3, "lblPrintInfo: cannot take the focus"},
      {"control a DTCPrint\nopen a\nchoose txtValue x", 3, "is not of the right kind for this"},
      {"control a DTCPrint\nopen a\npress any-key", 3, "There is no key \"any-key\"."},
      {"control a DTCPrint\nopen a\nexpect txtValue text \"x\"", 3, "Expected \"x\", found \"\"."},
      {"control a DTCPrint\nopen a\nexpect txtValue height 3", 3, "has no value \"height\""},
      {"control a DTCPrint\nopen a\nexpect bag a namespace \"kv\"", 3, "is not stored"},
      {"control a DTCPrint\nopen a\nexpect bag a value", 3, "is stored as \"\""},
      {"control a DTCPrint\nopen a\nok\napply", 4, "No page is open"},
      {"control a DTCPrint\nopen a\nfails 13 apply", 3, "should have failed with error 13"},
      {"control a DTCConfig\nopen a", 2, "\"a\" has no property pages."},
      {"control a DTCPrint\nopen a\npage propNichts", 3, "Error 429"},
      {"control a DTCPrint\nopen a\npage propUnsubGeneral", 3, "Error 438"},
      {"control a DTCElement\nbag opening-tag-only vielleicht\nopen a", 3, "Error 13"},
      {"control a DTCElement\nbag opening-tag-only vielleicht", 2, "Error 13"},
      {"reopen", 1, "Nothing has been opened yet."},
  };
  for (const Stopping& stopping : cases) {
    SCOPED_TRACE(stopping.script);
    Theatre theatre;
    const ScriptOutcome outcome = theatre.Run(stopping.script);
    ASSERT_TRUE(outcome.failure);
    EXPECT_EQ(outcome.failure->line, stopping.line);
    EXPECT_NE(outcome.failure->message.english.find(stopping.message), std::string::npos)
        << outcome.failure->message.english;
    EXPECT_FALSE(outcome.failure->message.german.empty());
    EXPECT_EQ(outcome.failure->message.In(Language::german), outcome.failure->message.german);
  }
}

TEST(PageScript, ReturnsTheStateOfThePagesThatWereShown) {
  Theatre theatre;
  const ScriptOutcome outcome = theatre.Run(
      "control a DTCPrint\n"
      "bag format \"hh:mm\"\n"
      "open a\n"
      "page propGeneralFormat\n");
  ASSERT_FALSE(outcome.failure) << outcome.failure->message.english;
  EXPECT_EQ(outcome.frameOpen, true);
  EXPECT_TRUE(outcome.canApply);
  ASSERT_EQ(outcome.pages.size(), 2U);
  EXPECT_EQ(outcome.pages[1].className, "propGeneralFormat");
  EXPECT_EQ(outcome.pages[1].caption, "Datenformat");
  EXPECT_TRUE(outcome.pages[1].filled);
  EXPECT_TRUE(outcome.pages[1].changed);
  const auto& controls = outcome.pages[1].controls;
  ASSERT_FALSE(controls.empty());
  EXPECT_EQ(controls[0].kind, "comboBox");
  EXPECT_EQ(controls[0].name, "cboFormat");
  EXPECT_EQ(*controls[0].Find("text"), StateValue(std::string("Uhrzeit (16:09)")));
  EXPECT_EQ(*controls[0].Find("choice"), StateValue(6));
  EXPECT_EQ(*controls[0].Find("enabled"), StateValue(true));
}

TEST(PageScript, ControlsOfTheStageKeepTheScriptsChanges) {
  Theatre theatre;
  const auto control = theatre.stage.newControl("DTCPrint");
  theatre.stage.controls["preis"] = control;
  const ScriptOutcome outcome = theatre.Run("open preis\nfocus txtValue\ntype \"neu\"\nok\n");
  ASSERT_FALSE(outcome.failure) << outcome.failure->message.english;
  EXPECT_EQ(ToText(control->Get("Value")), "neu");
  EXPECT_EQ(outcome.frameOpen, false);
}

TEST(PageScript, WithoutAnOpenFrameThereIsNoState) {
  Theatre theatre;
  const ScriptOutcome outcome = theatre.Run("# nur ein Kommentar\n");
  EXPECT_FALSE(outcome.failure);
  EXPECT_FALSE(outcome.frameOpen);
  EXPECT_TRUE(outcome.pages.empty());
}

TEST(PageScript, NothingCanBeDoneToTheFrameWhileADialogIsOpen) {
  for (const char* command : {"open a", "open b", "reopen", "page propIfGeneral",
                              "page propPrintGeneral", "select b", "apply", "ok", "cancel"}) {
    for (const std::string before : {"", "fails any "}) {
      SCOPED_TRACE(before + command);
      Theatre theatre;
      const ScriptOutcome outcome = theatre.Run(
          "control a DTCIf\ncontrol b DTCIf\nopen a\nclick cmdShowExpressionBuilder\n"
          "focus txtIfExpression\ntype x\n" +
          before + command + "\nclick cmdOk\n");
      ASSERT_TRUE(outcome.failure);
      EXPECT_EQ(outcome.failure->line, 7U);
      EXPECT_NE(outcome.failure->message.english.find("while a dialog is open"), std::string::npos)
          << outcome.failure->message.english;
      EXPECT_NE(outcome.failure->message.german.find("ein Dialog offen"), std::string::npos);
      EXPECT_EQ(outcome.frameOpen, true);
      ASSERT_EQ(outcome.pages.size(), 1U);
      EXPECT_EQ(outcome.pages[0].className, "propIfGeneral");
    }
  }
}

TEST(PageScript, AfterTheDialogTheFrameCanBeUsedAgain) {
  Theatre theatre;
  const ScriptOutcome outcome = theatre.Run(
      "control a DTCIf\nopen a\nclick cmdShowExpressionBuilder\nfocus txtIfExpression\ntype x\n"
      "click cmdOk\napply\nexpect bag a test \"%x%\"\npage propPrintGeneral\n");
  ASSERT_TRUE(outcome.failure);
  EXPECT_EQ(outcome.failure->line, 9U) << outcome.failure->message.english;
  EXPECT_NE(outcome.failure->message.english.find("Error 438"), std::string::npos);
}

TEST(PageScript, NothingCanBeDoneOnAPageThatCouldNotBeFilled) {
  const std::string until =
      "control a DTCPrint\ncontrol b DTCIf\nbag test x\nopen a\nfails 438 select b\n";
  Theatre theatre;
  const ScriptOutcome stopped = theatre.Run(until + "focus txtValue\n");
  ASSERT_TRUE(stopped.failure);
  EXPECT_EQ(stopped.failure->line, 6U);
  EXPECT_NE(stopped.failure->message.english.find("could not be filled"), std::string::npos);
  Theatre again;
  const ScriptOutcome outcome =
      again.Run(until + "select a\nfocus txtValue\ntype x\nok\nexpect bag a value x\n");
  EXPECT_FALSE(outcome.failure) << outcome.failure->message.english;
}

TEST(PageScript, AFrameThatFailsToOpenIsNotOpen) {
  Theatre theatre;
  const ScriptOutcome outcome = theatre.Run(
      "control a DTCPrint\nopen a\nfails 429 page propNichts\n"
      "expect frame open no\n");
  EXPECT_FALSE(outcome.failure) << outcome.failure->message.english;
  EXPECT_EQ(outcome.frameOpen, false);
  EXPECT_TRUE(outcome.pages.empty());
}

// Would take minutes if each key copied the input.
TEST(PageScript, TypingALongTextIsFast) {
  const std::string text(200'000, 'a');
  const std::string typing = "type \"" + text + "\"\n";
  const std::string conversations[] = {
      "control a DTCPrint\nopen a\nfocus txtValue\n" + typing + "ok\nexpect bag a value " + text,
      "control a DTCUnsubscriber\nopen a\nfocus txtSite\n" + typing + "ok\nexpect bag a site " +
          text + "/",
      "control a DTCPositionList\nopen a\nrow suiDesign header-css-style\n" + typing +
          "ok\nexpect bag a header-css-style " + text,
      "control a DTCProductList\nopen a\npage propProdListPicker\nrow suiSearch txtSearchTerm\n" +
          typing + "expect suiSearch/txtSearchTerm value " + text,
      "control a DTCIf\nopen a\nclick cmdShowExpressionBuilder\nfocus txtIfExpression\n" + typing +
          "click cmdOk\nok\nexpect bag a test %" + text + "%",
  };
  for (const std::string& conversation : conversations) {
    Theatre theatre;
    const ScriptOutcome outcome = theatre.Run(conversation);
    EXPECT_FALSE(outcome.failure) << conversation.substr(0, 80);
  }
}

TEST(PageScript, ADialogLeftOpenByTheScriptIsClosed) {
  Theatre theatre;
  const ScriptOutcome outcome =
      theatre.Run("control a DTCIf\nopen a\nclick cmdShowExpressionBuilder\n");
  EXPECT_FALSE(outcome.failure);
  EXPECT_EQ(outcome.pages.size(), 1U);
}

}  // namespace
}  // namespace kvo
