#include "apps/language/OpenPage.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "apps/language/Uri.h"

namespace kvo::language {

void PrintTo(const Position& position, std::ostream* out) {
  *out << position.line << ':' << position.character;
}

namespace {

TEST(Text, CountsUtf16InLinesOfAllKinds) {
  const Text text("aä🎉b\r\nc\rd\n\ne");
  EXPECT_EQ(text.PositionOf(0), (Position{0, 0}));
  EXPECT_EQ(text.PositionOf(3), (Position{0, 2}));
  EXPECT_EQ(text.PositionOf(7), (Position{0, 4}));
  EXPECT_EQ(text.PositionOf(10), (Position{1, 0}));
  EXPECT_EQ(text.PositionOf(12), (Position{2, 0}));
  EXPECT_EQ(text.PositionOf(14), (Position{3, 0}));
  EXPECT_EQ(text.PositionOf(1), (Position{0, 1})) << "after a later place";
  EXPECT_EQ(text.PositionOf(999), (Position{4, 1}));
}

TEST(Text, FindsPlacesThatAreNone) {
  const Text text("a🎉b\r\nc");
  EXPECT_EQ(text.OffsetOf({0, 1}), 1U);
  EXPECT_EQ(text.OffsetOf({0, 2}), 1U) << "inside a character";
  EXPECT_EQ(text.OffsetOf({0, 3}), 5U);
  EXPECT_EQ(text.OffsetOf({0, 999}), 6U) << "before the line break";
  EXPECT_EQ(text.OffsetOf({1, 1}), 9U);
  EXPECT_EQ(text.OffsetOf({2, 0}), 9U);
  EXPECT_EQ(text.OffsetOf({static_cast<std::size_t>(-1), static_cast<std::size_t>(-1)}), 9U);
  const Text bytes("a🎉b", Units::utf8);
  EXPECT_EQ(bytes.OffsetOf({0, 3}), 1U);
  EXPECT_EQ(bytes.OffsetOf({0, 5}), 5U);
  EXPECT_EQ(bytes.PositionOf(5), (Position{0, 5}));
  EXPECT_EQ(Text("").OffsetOf({0, 1}), 0U);
}

TEST(Text, GoesThereAndBack) {
  const std::string utf8 = "ä\r\n🎉x\r\ry\n€";
  for (const Units units : {Units::utf16, Units::utf8}) {
    const Text text(utf8, units);
    for (std::size_t at = 0; at <= utf8.size(); ++at) {
      const bool isInside =
          at < utf8.size() && (static_cast<unsigned char>(utf8[at]) & 0xC0U) == 0x80;
      if (isInside || (at > 0 && utf8.substr(at - 1, 2) == "\r\n")) continue;
      EXPECT_EQ(text.OffsetOf(text.PositionOf(at)), at);
    }
  }
}

TEST(Text, Replaces) {
  Text text("one\ntwo\nthree");
  text.Replace({0, 3}, {2, 0}, "\r\n🎉");
  EXPECT_EQ(text.Utf8(), "one\r\n🎉three");
  EXPECT_EQ(text.PositionOf(9), (Position{1, 2}));
  text.Replace({1, 2}, {0, 0}, "x");
  EXPECT_EQ(text.Utf8(), "one\r\n🎉xthree");
}

TEST(OpenPage, EncodesAsTheFileWillBe) {
  const std::string head = "<meta charset=\"iso-8859-15\">";
  const OpenPage page(head + "Ä€🎉x");
  EXPECT_EQ(page.Page().Bytes(), head + "\xC4\xA4?x");
  EXPECT_EQ(page.PositionOf(head.size() + 3), (Position{0, head.size() + 4}));
  EXPECT_EQ(page.OffsetOf({0, head.size() + 4}), head.size() + 3);
  EXPECT_EQ(page.Utf8Of("\xA4"), "€");
  ASSERT_EQ(page.Unwritable().size(), 1U);
  EXPECT_EQ(page.Unwritable()[0].offset, head.size() + 2);
}

TEST(OpenPage, MapsLongPages) {
  std::string utf8 = "<meta charset=\"windows-1252\">";
  const std::size_t head = utf8.size();
  for (int i = 0; i < 5000; ++i) utf8 += "ä";
  const OpenPage page(utf8);
  for (const std::size_t at : {head, head + 1023, head + 1024, head + 3000, head + 5000}) {
    EXPECT_EQ(page.PositionOf(at), (Position{0, at}));
    EXPECT_EQ(page.OffsetOf({0, at}), at);
  }
}

// The declaration counts within the first bytes of the file, of which the text has more.
TEST(OpenPage, FindsTheDeclarationWhereTheFileHasIt) {
  const std::string comment = "<!--" + std::string(20, 'x');
  std::string umlauts;
  for (int i = 0; i < 900; ++i) umlauts += "ä";
  const OpenPage page(comment + umlauts + "--><meta charset=\"windows-1252\">ö");
  EXPECT_EQ(page.Page().Encoding().Name(), "windows-1252");
  EXPECT_EQ(page.Page().Bytes().back(), '\xF6');
}

TEST(OpenPage, TakesFilesOfAnyEncoding) {
  const OpenPage page = OpenPage::OfFile(page::Page("Stra\xDF"
                                                    "e"),
                                         Units::utf16);
  EXPECT_EQ(page.Utf8(), "Straße");
  EXPECT_EQ(OpenPage::OfFile(page::Page("\xEF\xBB\xBFx"), Units::utf16).Utf8(), "x");
  EXPECT_EQ(OpenPage::OfFile(page::Page("<meta charset=utf-8>\xFFx"), Units::utf16).Utf8(),
            "<meta charset=utf-8>\xEF\xBF\xBDx");
}

TEST(Uri, NamesFiles) {
  EXPECT_EQ(PathOf("file:///a%20b/%C3%A4.html"), "/a b/ä.html");
  EXPECT_EQ(PathOf("FILE://localhost/a%2"), "/a%2");
  EXPECT_EQ(PathOf("file:///a?b#c"), "/a");
  EXPECT_FALSE(PathOf("file://host/a"));
  EXPECT_FALSE(PathOf("untitled:1"));
  EXPECT_FALSE(PathOf("file:///a%00b"));
  EXPECT_EQ(UriOf("/a b/ä(1)#.html"), "file:///a%20b/%C3%A4%281%29%23.html");
  EXPECT_EQ(PathOf(UriOf("/a b/ä(1)#?.html")), "/a b/ä(1)#?.html");
}

}  // namespace
}  // namespace kvo::language
