// Text is converted to Windows' encoding and back without loss.
#include "host/win32/WideText.h"

#include <gtest/gtest.h>

#include "host/win32/WindowText.h"

namespace kvo {
namespace {

TEST(WideTexts, SurviveARoundTrip) {
  const std::string texts[] = {"",
                               "abc",
                               "äöüß€",
                               "😀 \xF4\x8F\xBF\xBF",
                               std::string("a\0b", 3),
                               "\r\n\t\x01\x7F",
                               "\xEF\xBF\xBD\xEF\xBF\xBF"};
  for (const std::string& text : texts) EXPECT_EQ(FromWide(ToWide(text)), text);
  EXPECT_EQ(ToWide("😀"), L"\xD83D\xDE00");
  EXPECT_EQ(ToWide(std::string_view("a\0b", 3)).size(), 3U);
}

TEST(WideTexts, UnpairedSurrogatesSurvive) {
  const std::wstring texts[] = {L"a\xD800", L"\xDC00z", L"\xDC00\xD800", L"\xD800\xD800\xDC00",
                                std::wstring(1, L'\xDBFF')};
  for (const std::wstring& text : texts) EXPECT_EQ(ToWide(FromWide(text)), text);
  EXPECT_EQ(FromWide(L"\xD800"), "\xED\xA0\x80");
}

TEST(WideTexts, InvalidUtf8IsReplaced) {
  EXPECT_EQ(ToWide("a\xFF"
                   "b"),
            L"a\xFFFD"
            L"b");
  EXPECT_EQ(ToWide("\xC3"), L"\xFFFD");
  EXPECT_EQ(ToWide("\xC3("), L"\xFFFD(");
  EXPECT_EQ(ToWide("\x80\x80"), L"\xFFFD\xFFFD");
  EXPECT_EQ(ToWide("\xF4\x90\x80\x80").front(), L'\xFFFD');  // beyond the last code point
}

TEST(WindowTexts, HaveNoNulAndNoAccessKeys) {
  EXPECT_EQ(ToWindowText(std::string_view("a\0b", 3)),
            L"a\x2400"
            L"b");
  EXPECT_EQ(ToWindowCaption("R&D && mehr"), L"R&&D &&&& mehr");
}

}  // namespace
}  // namespace kvo
