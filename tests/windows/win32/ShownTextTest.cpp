// How Windows' edit boxes show texts; tests/forms covers the rest.
#include "host/win32/ShownText.h"

#include <gtest/gtest.h>

namespace kvo {
namespace {

TEST(WindowStyle, ALineBreakIsASymbolInOneLineAndCrLfInSeveral) {
  constexpr std::string_view kText = "a😀\r\nb\rc\nd";
  EXPECT_EQ(ShownText(kText, Lines::one, kWindowStyle).Units(), u"a😀\u00B6b\u00B6c\u00B6d");
  EXPECT_EQ(ShownText(kText, Lines::many, kWindowStyle).Units(), u"a😀\r\nb\r\nc\r\nd");
  EXPECT_EQ(kWindowStyle.typed(u"a\r\nb", Lines::many), "a\r\nb");
}

TEST(WindowStyle, ANulDoesNotEndAText) {
  EXPECT_EQ(ShownText(std::string_view("a\0b", 3), Lines::many, kWindowStyle).Units(), u"a\u2400b");
  EXPECT_EQ(WithWindowsBreaks(L"a\nb\rc\r\nd\n\r"), L"a\r\nb\r\nc\r\nd\r\n\r\n");
}

// An unpaired surrogate is converted in both directions.
TEST(WindowStyle, ASecondHalfJoinsTheFirst) {
  const ShownText before("a\xED\xA0\xBD", Lines::one, kWindowStyle);
  const auto edit = FindEdit(before, {2, 0}, ToUnits(L"a\xD83D\xDE00"), 3);
  ASSERT_TRUE(edit);
  EXPECT_EQ(edit->start, 1U);
  EXPECT_EQ(edit->length, 1U);
  EXPECT_EQ(edit->typed, "😀");
}

}  // namespace
}  // namespace kvo
