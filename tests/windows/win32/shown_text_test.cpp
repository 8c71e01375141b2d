// How a form's text and the text of its window correspond.
#include "host/win32/ShownText.h"

#include <gtest/gtest.h>

namespace kvo {
namespace {

TEST(ShownTexts, PositionsOfALineCountUnits) {
  const ShownText shown("a😀\r\nb", Lines::one);
  EXPECT_EQ(shown.Units(),
            L"a\xD83D\xDE00\xB6"
            L"b");
  EXPECT_EQ(shown.ToWindow(2), 3);
  EXPECT_EQ(shown.ToForm(3), 2U);
  EXPECT_EQ(shown.ToForm(2), 1U);  // inside the pair
  EXPECT_EQ(shown.ToFormBehind(2), 2U);
  EXPECT_EQ(shown.ToForm(4), 4U);  // behind CR LF
  EXPECT_EQ(shown.ToWindow(99), 5);
}

TEST(ShownTexts, EveryLineBreakOfSeveralLinesIsCrLf) {
  const ShownText shown("a\r\nb\rc\nd", Lines::many);
  EXPECT_EQ(shown.Units(), L"a\r\nb\r\nc\r\nd");
  EXPECT_EQ(shown.ToForm(1), 1U);
  EXPECT_EQ(shown.ToForm(3), 3U);
  EXPECT_EQ(shown.ToForm(6), 5U);
  EXPECT_EQ(shown.ToWindow(3), 3);
  EXPECT_EQ(shown.ToWindow(5), 6);
}

TEST(ShownTexts, NothingEndsAText) {
  EXPECT_EQ(ShownText(std::string_view("a\0b", 3), Lines::many).Units(),
            L"a\x2400"
            L"b");
  EXPECT_EQ(WithWindowsBreaks(L"a\nb\rc\r\nd\n\r"), L"a\r\nb\r\nc\r\nd\r\n\r\n");
}

struct Case {
  std::string_view before;
  UnitRange selected;
  std::wstring after;
  int caret;
  std::size_t start;
  std::size_t length;
  std::string typed;
};

TEST(Edits, AreFoundAsTheDifference) {
  const Case cases[] = {
      {"abc", {1, 0}, L"axbc", 2, 1, 0, "x"},
      {"aaa", {1, 0}, L"aaaa", 2, 1, 0, "a"},      // typed at the caret
      {"aaa", {2, 0}, L"aa", 1, 1, 1, ""},         // the backspace key
      {"aaa", {1, 0}, L"aa", 1, 1, 1, ""},         // the delete key
      {"a\r\nb", {1, 0}, L"ab", 1, 1, 2, ""},      // a line break as a whole
      {"a\nb", {1, 0}, L"ab", 1, 1, 1, ""},        // however it is made
      {"ab", {1, 0}, L"a\r\nb", 3, 1, 0, "\r\n"},  // and typed
      {"0", {0, 1}, L"0", 1, 0, 1, "0"},           // over the same
      {"a\r\nb", {0, 4}, L"x", 1, 0, 4, "x"},
      {"😀", {0, 2}, L"\xD83D\xDE01", 2, 0, 1, "😁"},  // half of the pair is the same
      {"😀", {2, 0}, L"\xD83D\xDE01", 2, 0, 1, "😁"},
      {"abc", {3, 0}, L"xbc", 1, 0, 1, "x"},  // undone elsewhere
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.before);
    const auto edit = FindEdit(ShownText(c.before, Lines::many), c.selected, c.after, c.caret);
    ASSERT_TRUE(edit);
    EXPECT_EQ(edit->start, c.start);
    EXPECT_EQ(edit->length, c.length);
    EXPECT_EQ(edit->typed, c.typed);
  }
  EXPECT_FALSE(FindEdit(ShownText("abc", Lines::one), {1, 0}, L"abc", 1));
}

TEST(Edits, ASecondHalfJoinsTheFirst) {
  const auto edit = FindEdit(ShownText("a\xED\xA0\xBD", Lines::one), {2, 0}, L"a\xD83D\xDE00", 3);
  ASSERT_TRUE(edit);
  EXPECT_EQ(edit->start, 1U);
  EXPECT_EQ(edit->length, 1U);
  EXPECT_EQ(edit->typed, "😀");
}

}  // namespace
}  // namespace kvo
