// How Qt's boxes show texts; tests/forms covers the rest.
#include "host/qt/ShownText.h"

#include <gtest/gtest.h>

#include "host/qt/QtText.h"

namespace kvo {
namespace {

using namespace Qt::StringLiterals;

TEST(QtTexts, InvalidBytesAreReplaced) {
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

TEST(QtStyle, ALineShowsEveryCharacter) {
  EXPECT_EQ(ShownText("a😀\r\nb", Lines::one, kQtStyle).Units(), u"a😀\r\nb");
  EXPECT_EQ(kQtStyle.typed(u"a\nb", Lines::one), "a\nb");
}

TEST(QtStyle, ALineBreakInSeveralLinesIsOneUnit) {
  EXPECT_EQ(ShownText("a\r\nb\rc\nd", Lines::many, kQtStyle).Units(), u"a\nb\nc\nd");
  EXPECT_EQ(kQtStyle.typed(u"a\nb\u2028\u2029😀", Lines::many), "a\r\nb\r\n\r\n😀");
}

TEST(QtStyle, CharactersWithAMeaningForADocumentHaveAStandIn) {
  const std::string_view text("\0\xE2\x80\xA8\xE2\x80\xA9", 7);
  EXPECT_EQ(ShownText(text, Lines::many, kQtStyle).Units(), u"\u2400\u21B5\u21B5");
}

}  // namespace
}  // namespace kvo
