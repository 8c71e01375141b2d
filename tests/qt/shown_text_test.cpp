// How a form's text and the text of its widget correspond.
#include "host/qt/ShownText.h"

#include <gtest/gtest.h>

#include "host/qt/QtText.h"

namespace kvo {
namespace {

using namespace Qt::StringLiterals;

TEST(QtTexts, WhatIsInvalidIsReplaced) {
  EXPECT_EQ(ToQt("a\xFF"
                 "b"),
            u"a\uFFFDb"_s);
  EXPECT_EQ(FromQt(u"a"_s + QChar(0xD800) + u"b"_s),
            "a\xEF\xBF\xBD"
            "b");
  EXPECT_EQ(FromQt(ToQt("äöü€😀")), "äöü€😀");
  EXPECT_EQ(ToQt(std::string_view("a\0b", 3)).size(), 3);
  EXPECT_EQ(ToQtCaption("R&D && mehr"), u"R&&D &&&& mehr"_s);
}

TEST(ShownTexts, PositionsOfALineCountUnits) {
  const ShownText shown("a😀\r\nb", Lines::one);
  EXPECT_EQ(shown.Units().size(), 6);
  EXPECT_EQ(shown.ToWidget(2), 3);
  EXPECT_EQ(shown.ToForm(3), 2U);
  EXPECT_EQ(shown.ToForm(2), 1U);  // inside the pair
  EXPECT_EQ(shown.ToFormBehind(2), 2U);
  EXPECT_EQ(shown.ToWidget(99), 6);
}

TEST(ShownTexts, EveryLineBreakOfSeveralLinesIsOneUnit) {
  const ShownText shown("a\r\nb\rc\nd", Lines::many);
  EXPECT_EQ(shown.Units(), u"a\nb\nc\nd"_s);
  EXPECT_EQ(shown.ToForm(1), 1U);
  EXPECT_EQ(shown.ToForm(2), 3U);  // behind CR LF
  EXPECT_EQ(shown.ToForm(4), 5U);
  EXPECT_EQ(shown.ToWidget(3), 2);
}

TEST(ShownTexts, WhatADocumentTakesForSomethingElseHasAStandIn) {
  const ShownText shown(std::string_view("\0\xE2\x80\xA8\xE2\x80\xA9", 7), Lines::many);
  EXPECT_EQ(shown.Units(), u"\u2400\u21B5\u21B5"_s);
}

struct Case {
  std::string_view before;
  UnitRange selected;
  QString after;
  int caret;
  std::size_t start;
  std::size_t length;
  std::string typed;
};

TEST(Edits, AreFoundAsTheDifference) {
  const Case cases[] = {
      {"abc", {1, 0}, u"axbc"_s, 2, 1, 0, "x"},
      {"aaa", {1, 0}, u"aaaa"_s, 2, 1, 0, "a"},    // typed at the caret
      {"aaa", {2, 0}, u"aa"_s, 1, 1, 1, ""},       // the backspace key
      {"aaa", {1, 0}, u"aa"_s, 1, 1, 1, ""},       // the delete key
      {"a\r\nb", {1, 0}, u"ab"_s, 1, 1, 2, ""},    // a line break as a whole
      {"ab", {1, 0}, u"a\nb"_s, 2, 1, 0, "\r\n"},  // and typed
      {"0", {0, 1}, u"0"_s, 1, 0, 1, "0"},         // over the same
      {"a\r\nb", {0, 3}, u"x"_s, 1, 0, 4, "x"},
      {"😀", {0, 2}, u"😁"_s, 2, 0, 1, "😁"},  // half of the pair is the same
      {"😀", {2, 0}, u"😁"_s, 2, 0, 1, "😁"},
      {"abc", {3, 0}, u"xbc"_s, 1, 0, 1, "x"},  // undone elsewhere
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.before);
    const auto edit = FindEdit(ShownText(c.before, Lines::many), c.selected, c.after, c.caret);
    ASSERT_TRUE(edit);
    EXPECT_EQ(edit->start, c.start);
    EXPECT_EQ(edit->length, c.length);
    EXPECT_EQ(edit->typed, c.typed);
  }
  EXPECT_FALSE(FindEdit(ShownText("abc", Lines::one), {1, 0}, u"abc"_s, 1));
}

}  // namespace
}  // namespace kvo
