// The mapping between a form's text and its widget's text, in any toolkit.
#include "common/forms/ShownText.h"

#include <gtest/gtest.h>

#include "common/forms/FormControls.h"

namespace kvo {
namespace {

// Two test toolkits, whose widgets break lines by LF and by CR LF. They know only the characters
// that the tests use.
std::u16string Units(std::string_view character) {
  if (character == "😀") return u"😀";
  if (character == "\xED\xA0\xBD") return {0xD83D};  // its first half
  return {static_cast<char16_t>(character[0])};
}

bool IsBreak(std::string_view character) { return character == "\r" || character == "\n"; }

std::string Text(std::u16string_view units) {
  std::string text;
  for (const char16_t unit : units) {
    if (unit == 0xD83D) continue;
    text += unit == 0xDE00 ? "😀" : unit == 0xDE01 ? "😁" : std::string(1, static_cast<char>(unit));
  }
  return text;
}

constexpr TextStyle kLf = {
    .show =
        [](std::string_view character, Lines lines) {
          return IsBreak(character) && lines == Lines::many ? u"\n" : Units(character);
        },
    .joinsCrLfInLine = false,
    .typed = [](std::u16string_view units, Lines) { return units == u"\n" ? "\r\n" : Text(units); },
};
constexpr TextStyle kCrLf = {
    .show = [](std::string_view character, Lines lines) -> std::u16string {
      if (IsBreak(character)) return lines == Lines::many ? u"\r\n" : u"\u00B6";
      return Units(character);
    },
    .joinsCrLfInLine = true,
    .typed = [](std::u16string_view units, Lines) { return Text(units); },
};

TEST(ShownTexts, PositionsOfALineCountUnits) {
  const ShownText shown("a😀\r\nb", Lines::one, kLf);
  EXPECT_EQ(shown.Units(), u"a😀\r\nb");
  EXPECT_EQ(shown.ToWidget(2), 3);
  EXPECT_EQ(shown.ToForm(3), 2U);
  EXPECT_EQ(shown.ToForm(2), 1U);  // inside the pair
  EXPECT_EQ(shown.ToFormBehind(2), 2U);
  EXPECT_EQ(shown.ToWidget(99), 6);
}

TEST(ShownTexts, ALineMayJoinCrLf) {
  const ShownText shown("a😀\r\nb", Lines::one, kCrLf);
  EXPECT_EQ(shown.Units(), u"a😀\u00B6b");
  EXPECT_EQ(shown.ToForm(4), 4U);  // after CR LF
  EXPECT_EQ(shown.ToWidget(99), 5);
}

TEST(ShownTexts, EveryLineBreakOfSeveralLinesIsOneBreak) {
  const ShownText lf("a\r\nb\rc\nd", Lines::many, kLf);
  EXPECT_EQ(lf.Units(), u"a\nb\nc\nd");
  EXPECT_EQ(lf.ToForm(1), 1U);
  EXPECT_EQ(lf.ToForm(2), 3U);  // after CR LF
  EXPECT_EQ(lf.ToForm(4), 5U);
  EXPECT_EQ(lf.ToWidget(3), 2);

  const ShownText crLf("a\r\nb\rc\nd", Lines::many, kCrLf);
  EXPECT_EQ(crLf.Units(), u"a\r\nb\r\nc\r\nd");
  EXPECT_EQ(crLf.ToForm(1), 1U);
  EXPECT_EQ(crLf.ToForm(3), 3U);
  EXPECT_EQ(crLf.ToForm(6), 5U);
  EXPECT_EQ(crLf.ToWidget(3), 3);
  EXPECT_EQ(crLf.ToWidget(5), 6);
}

TEST(ShownTexts, LeadingStrayBytesBelongToTheFirstCharacter) {
  const ShownText shown(
      "\x80"
      "ab",
      Lines::one, kLf);
  EXPECT_EQ(shown.Units().size(), 2U);
  EXPECT_EQ(CharacterCount("\x80"
                           "ab"),
            2U);
}

struct Case {
  const TextStyle& style;
  std::string_view before;
  UnitRange selected;
  std::u16string_view after;
  int caret;
  std::size_t start;
  std::size_t length;
  std::string_view typed;
};

TEST(Edits, AreTheDifference) {
  const Case cases[] = {
      {kLf, "abc", {1, 0}, u"axbc", 2, 1, 0, "x"},
      {kLf, "aaa", {1, 0}, u"aaaa", 2, 1, 0, "a"},          // typed at the caret
      {kLf, "aaa", {2, 0}, u"aa", 1, 1, 1, ""},             // the backspace key
      {kLf, "aaa", {1, 0}, u"aa", 1, 1, 1, ""},             // the delete key
      {kLf, "a\r\nb", {1, 0}, u"ab", 1, 1, 2, ""},          // removes a whole line break
      {kCrLf, "a\r\nb", {1, 0}, u"ab", 1, 1, 2, ""},        //
      {kCrLf, "a\nb", {1, 0}, u"ab", 1, 1, 1, ""},          // in either form
      {kLf, "ab", {1, 0}, u"a\nb", 2, 1, 0, "\r\n"},        // typed line breaks
      {kCrLf, "ab", {1, 0}, u"a\r\nb", 3, 1, 0, "\r\n"},    //
      {kLf, "0", {0, 1}, u"0", 1, 0, 1, "0"},               // typed over the same character
      {kLf, "a\r\nb", {0, 3}, u"x", 1, 0, 4, "x"},          //
      {kCrLf, "a\r\nb", {0, 4}, u"x", 1, 0, 4, "x"},        //
      {kLf, "😀", {0, 2}, u"😁", 2, 0, 1, "😁"},               // half of the pair is unchanged
      {kLf, "😀", {2, 0}, u"😁", 2, 0, 1, "😁"},               //
      {kLf, "a\xED\xA0\xBD", {2, 0}, u"a😀", 3, 1, 1, "😀"},  // a second half joins the first
      {kLf, "abc", {3, 0}, u"xbc", 1, 0, 1, "x"},           // undone elsewhere
      {kLf, "", {2, 0}, u"xy", 2, 0, 0, "xy"},              // the caret was past the end
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.before);
    const auto edit =
        FindEdit(ShownText(c.before, Lines::many, c.style), c.selected, c.after, c.caret);
    ASSERT_TRUE(edit);
    EXPECT_EQ(edit->start, c.start);
    EXPECT_EQ(edit->length, c.length);
    EXPECT_EQ(edit->typed, c.typed);
  }
  EXPECT_FALSE(FindEdit(ShownText("abc", Lines::one, kLf), {1, 0}, u"abc", 1));
}

}  // namespace
}  // namespace kvo
