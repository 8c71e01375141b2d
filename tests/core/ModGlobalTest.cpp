#include "common/text/modGlobal.h"

#include <gtest/gtest.h>

#include <functional>

#include "common/values/Object.h"
#include "common/values/RuntimeError.h"
#include "tests/core/Definitions.h"
#include "tests/core/ErrorOf.h"
#include "tests/core/TestPlatform.h"

namespace kvo {
namespace {

// Calls `check` with every text of up to `length` pieces from the alphabet.
void ForEveryText(const std::vector<std::string>& alphabet, int length,
                  const std::function<void(const std::string&)>& check, std::string text = {}) {
  check(text);
  if (length == 0) return;
  for (const std::string& piece : alphabet) {
    ForEveryText(alphabet, length - 1, check, text + piece);
    if (testing::Test::HasFailure()) return;
  }
}

TEST(FixAmpersands, EscapesABareAmpersand) { EXPECT_EQ(FixAmpersands("a & b"), "a &amp; b"); }
TEST(FixAmpersands, KeepsAnEscapedOne) { EXPECT_EQ(FixAmpersands("&amp;"), "&amp;"); }
TEST(FixAmpersands, EscapesEachOfTwo) { EXPECT_EQ(FixAmpersands("&&x"), "&amp;&amp;x"); }
TEST(FixAmpersands, KeepsTheLastCharacterRaw) { EXPECT_EQ(FixAmpersands("a&"), "a&"); }
TEST(FixAmpersands, KeepsUnfinishedOnesAtTheEndRaw) {
  for (const char* text : {"&", "x&a", "x&am", "x&amp", "x&AMP"})
    EXPECT_EQ(FixAmpersands(text), text);
}
TEST(FixAmpersands, EscapesOtherEntitiesAgain) { EXPECT_EQ(FixAmpersands("&lt;"), "&amp;lt;"); }
TEST(FixAmpersands, IgnoresCase) { EXPECT_EQ(FixAmpersands("&AMP;&Amp;"), "&AMP;&Amp;"); }
TEST(FixAmpersands, SeesAcrossLineBreaks) { EXPECT_EQ(FixAmpersands("&\n&\r"), "&amp;\n&amp;\r"); }
TEST(FixAmpersands, KeepsANulCharacter) {
  const std::string text("&\0&", 3);
  EXPECT_EQ(FixAmpersands(text), std::string("&amp;\0&", 7));
}
TEST(FixAmpersands, EqualsTheRepeatedExpressionOnEveryShortText) {
  const auto check = [](const std::string& text) {
    ASSERT_EQ(FixAmpersands(text), FixAmpersandsByDefinition(text)) << text;
  };
  ForEveryText({"&", "a", "m", "p", ";", "\n"}, 6, check);
  ForEveryText({"&", "A", "m", "P", "x"}, 6, check);
}
TEST(FixAmpersands, IsAppliedToEachValueNotToAWholeTag) {
  // The quote after a trailing "&" would make it count as bare.
  EXPECT_EQ(FixAmpersands("a&"), "a&");
  EXPECT_EQ(FixAmpersands("value=\"a&\""), "value=\"a&amp;\"");
}
TEST(FixAmpersands, HasNoLengthLimit) {
  const std::string text = std::string(1 << 20, '&') + "x";
  EXPECT_EQ(FixAmpersands(text).size(), (std::size_t{5} << 20) + 1);
}

TEST(EncodeMarkupTokens, RemovesMarkersAndEncodes) {
  EXPECT_EQ(EncodeMarkupTokens("<![CDATA[a<b]]>"), "akv:@lt;b");
}
TEST(EncodeMarkupTokens, KeepsALoneLineFeedAndCarriageReturn) {
  EXPECT_EQ(EncodeMarkupTokens("a\nb\rc"), "a\nb\rc");
}
TEST(EncodeMarkupTokens, EncodesALineBreak) {
  EXPECT_EQ(EncodeMarkupTokens("a\r\nb"), "akv:@br;b");
}
TEST(EncodeMarkupTokens, JoinsALineBreakAcrossARemovedMarker) {
  EXPECT_EQ(EncodeMarkupTokens("\r<![CDATA[\n"), "kv:@br;");
}
TEST(EncodeMarkupTokens, RemovesAnEndMarkerJoinedByARemoval) {
  EXPECT_EQ(EncodeMarkupTokens("]]<![CDATA[>"), "");
}
TEST(EncodeMarkupTokens, EncodesAStartMarkerJoinedByARemoval) {
  EXPECT_EQ(EncodeMarkupTokens("<![CD<![CDATA[ATA["), "kv:@lt;![CDATA[");
}
TEST(EncodeMarkupTokens, LeavesAnEndMarkerJoinedByItsOwnRemoval) {
  EXPECT_EQ(EncodeMarkupTokens("]]]]>>"), "]]kv:@gt;");
}
TEST(EncodeMarkupTokens, ComparesMarkersExactly) {
  EXPECT_EQ(EncodeMarkupTokens("<![cdata[x"), "kv:@lt;![cdata[x");
}
TEST(EncodeMarkupTokens, EqualsItsSevenPassesOnEveryShortText) {
  const auto check = [](const std::string& text) {
    ASSERT_EQ(EncodeMarkupTokens(text), EncodeByDefinition(text)) << text;
  };
  ForEveryText({"<![CDATA[", "]]>", "<", ">", "\"", "&", "\r", "\n", "]"}, 5, check);
  ForEveryText({"<![CD", "ATA[", "<![CDATA[", "]", ">", "\r", "\n"}, 6, check);
}

TEST(DecodeMarkupTokens, IsTheInverse) {
  EXPECT_EQ(DecodeMarkupTokens("kv:@lt;kv:@gt;kv:@quot;kv:@amp;kv:@br;"), "<>\"&\r\n");
}
TEST(DecodeMarkupTokens, ComparesTokensExactly) {
  EXPECT_EQ(DecodeMarkupTokens("kv:@LT;KV:@lt;kv:@lt"), "kv:@LT;KV:@lt;kv:@lt");
}
TEST(DecodeMarkupTokens, EqualsItsFivePassesOnEveryShortText) {
  ForEveryText({"kv:@", "lt;", "gt;", "quot;", "amp;", "br;", "k", "kv:@lt;"}, 5,
               [](const std::string& text) {
                 ASSERT_EQ(DecodeMarkupTokens(text), DecodeByDefinition(text)) << text;
               });
}
TEST(MarkupTokens, DecodingRestoresEncodedTextExceptMarkers) {
  ForEveryText({"<", ">", "\"", "&", "\r", "\n", "]", "a"}, 5, [](const std::string& text) {
    if (text.find("]]>") != std::string::npos) return;
    ASSERT_EQ(DecodeMarkupTokens(EncodeMarkupTokens(text)), text);
  });
}
TEST(MarkupTokens, EncodingAnEncodedTextChangesNothing) {
  ForEveryText({"<![CDATA[", "]", "<", ">", "&", "\r", "\n"}, 5, [](const std::string& text) {
    const std::string encoded = EncodeMarkupTokens(text);
    ASSERT_EQ(EncodeMarkupTokens(encoded), encoded) << text;
  });
}

TEST(EncodeHtmlEntities, LeavesTheAmpersand) {
  EXPECT_EQ(EncodeHtmlEntities("<a href=\"x&y\">"), "&lt;a href=&quot;x&y&quot;&gt;");
}

TEST(TrimCrLf, TrimsInterleavedBlanksAndLineBreaks) {
  EXPECT_EQ(TrimCrLf(std::string(" \r\n \r\nabc \r\n")), "abc");
}
TEST(TrimCrLf, KeepsALoneLineFeedAndATab) { EXPECT_EQ(TrimCrLf(std::string("\n x\t")), "\n x\t"); }
TEST(TrimCrLf, KeepsAnEmptyVariant) {
  EXPECT_TRUE(TrimCrLf(Variant()).IsEmpty());
  EXPECT_EQ(TrimCrLf(Variant(" ")), Variant(""));
}
TEST(TrimCrLf, EqualsItsDefinitionOnEveryShortText) {
  ForEveryText({" ", "\r", "\n", "a"}, 8,
               [](const std::string& text) { ASSERT_EQ(TrimCrLf(text), TrimByDefinition(text)); });
}
TEST(TrimCrLf, HasNoDepthLimit) {
  std::string text;
  for (int i = 0; i < 500'000; ++i) text += " \r\n";
  EXPECT_EQ(TrimCrLf(text + "x" + text), "x");
}

TEST(CreateGUID, ComesFromTheSystemsGenerator) {
  TestPlatform platform;
  const PlatformScope scope(platform);
  EXPECT_EQ(std::string_view(CreateGUID()), "{00000000-0000-4000-8000-000000000001}");
  EXPECT_EQ(std::string_view(CreateGUID()), "{00000000-0000-4000-8000-000000000002}");
}

TEST(ColorToHex, PutsRedFirst) {
  EXPECT_EQ(ColorToHex(0), "000000");
  EXPECT_EQ(ColorToHex(255), "FF0000");
  EXPECT_EQ(ColorToHex(16711680), "0000FF");
  EXPECT_EQ(ColorToHex(0x0080FF), "FF8000");
}
TEST(ColorToHex, NeverFails) {
  for (const ColorNumber color : {-1, INT32_MIN, INT32_MAX, -2147483633})
    EXPECT_GE(ColorToHex(color).size(), 6U);
}
TEST(HexPad2, PadsToTwoAndReturnsLongerFormsWhole) {
  EXPECT_EQ(HexPad2(10), "0A");
  EXPECT_EQ(HexPad2(0), "00");
  EXPECT_EQ(HexPad2(255), "FF");
  EXPECT_EQ(HexPad2(256), "100");
  EXPECT_EQ(HexPad2(-1), "FFFF");
}
TEST(HexToInt, ReadsDigitsInBothCases) {
  EXPECT_EQ(HexToInt(""), 0);
  EXPECT_EQ(HexToInt("ff"), 255);
  EXPECT_EQ(HexToInt("8A"), 138);
  EXPECT_EQ(HexToInt("7FFF"), 32767);
}
TEST(HexToInt, AcceptsLettersAboveF) {
  EXPECT_EQ(HexToInt("Z"), 35);
  EXPECT_EQ(HexToInt("["), 91 - 55);
}
TEST(HexToInt, FailsOnOtherCharactersAndBeyondSixteenBits) {
  EXPECT_EQ(ErrorOf([] { HexToInt("1-"); }), 13);
  EXPECT_EQ(ErrorOf([] { HexToInt("8000"); }), 6);
  EXPECT_EQ(ErrorOf([] { HexToInt("10000"); }), 6);
}

struct ColorCase {
  const char* text;
  bool parsed;
  int red, green, blue;
};
class ParseColorOf : public testing::TestWithParam<ColorCase> {};
TEST_P(ParseColorOf, GivesTheComponents) {
  const ColorCase& expected = GetParam();
  std::uint8_t red = 1;
  std::uint8_t green = 2;
  std::uint8_t blue = 3;
  EXPECT_EQ(ParseColor(expected.text, red, green, blue), expected.parsed) << expected.text;
  EXPECT_EQ(red, expected.red);
  EXPECT_EQ(green, expected.green);
  EXPECT_EQ(blue, expected.blue);
}
INSTANTIATE_TEST_SUITE_P(
    Table, ParseColorOf,
    testing::Values(
        ColorCase{" #ff8000 ", true, 255, 128, 0}, ColorCase{"rgb(10,20,30)", true, 10, 20, 30},
        ColorCase{"RGB(10,20,30)", true, 10, 20, 30}, ColorCase{"rgb(300,0,0)", true, 255, 0, 0},
        ColorCase{"rgb(10, 20, 30)", false, 255, 255, 255},
        ColorCase{"rgb(1000,0,0)", false, 255, 255, 255},
        ColorCase{"rgb(,0,0)", false, 255, 255, 255},
        ColorCase{"rgb(1,2,3)x", false, 255, 255, 255}, ColorCase{"rgb(1,2)", false, 255, 255, 255},
        ColorCase{"rgb", false, 255, 255, 255}, ColorCase{"#fff", false, 255, 255, 255},
        ColorCase{"#ff80000", false, 255, 255, 255}, ColorCase{"#ff800g", false, 255, 255, 255},
        ColorCase{"red", false, 255, 255, 255}, ColorCase{"", false, 255, 255, 255}));

class WithPages : public Object {
 public:
  std::optional<std::vector<std::string>> PropertyPages() override {
    return std::vector<std::string>{"propA", "propB"};
  }
};
class Extender : public Object {
 public:
  Variant Get(std::string_view name) override {
    if (name == "Object") return ObjectRef(std::make_shared<WithPages>());
    return Object::Get(name);
  }
};

TEST(ShowPropertyPages, OpensTheFrameOverTheObjectsOwnPages) {
  TestPlatform platform;
  const PlatformScope scope(platform);
  const auto object = std::make_shared<WithPages>();
  ShowPropertyPages(object, "Titel", 7);
  EXPECT_EQ(platform.log, std::vector<std::string>{"frame 7 Titel propA propB"});
  EXPECT_EQ(platform.shown, object);
}
TEST(ShowPropertyPages, AsksTheWrappedObjectNext) {
  TestPlatform platform;
  const PlatformScope scope(platform);
  ShowPropertyPages(std::make_shared<Extender>(), "Titel", 0);
  EXPECT_EQ(platform.log, std::vector<std::string>{"frame 0 Titel propA propB"});
}
TEST(ShowPropertyPages, IsATypeMismatchWhenNeitherNamesPages) {
  TestPlatform platform;
  const PlatformScope scope(platform);
  EXPECT_EQ(ErrorOf([] { ShowPropertyPages(std::make_shared<Collection>(), "Titel", 0); }), 13);
  EXPECT_TRUE(platform.log.empty());
}

// Runs a function of the test when its member `Object` is read.
class OddExtender : public Object {
 public:
  explicit OddExtender(std::function<Variant()> answer) : answer_(std::move(answer)) {}
  Variant Get(std::string_view name) override {
    return name == "Object" ? answer_() : Object::Get(name);
  }

 private:
  std::function<Variant()> answer_;
};

TEST(ShowPropertyPages, IsATypeMismatchWhenTheObjectCannotBeReached) {
  TestPlatform platform;
  const PlatformScope scope(platform);
  const std::function<Variant()> answers[] = {
      [] { return Variant(); },
      [] { return Variant("kein Objekt"); },
      [] { return Variant(ObjectRef()); },
      [] { return Variant(ObjectRef(std::make_shared<Collection>())); },
      []() -> Variant { throw RuntimeError(ErrorNumber::objectNotSet); },
      []() -> Variant { throw RuntimeError(ErrorNumber::invalidCall); },
      []() -> Variant { throw std::runtime_error("the host's server is gone"); },
  };
  for (const auto& answer : answers)
    EXPECT_EQ(ErrorOf([&] { ShowPropertyPages(std::make_shared<OddExtender>(answer), "T", 0); }),
              13);
  EXPECT_EQ(ErrorOf([] { ShowPropertyPages(nullptr, "Titel", 0); }), 13);
  EXPECT_TRUE(platform.log.empty());
}

TEST(ShowPropertyPages, PassesOnBadAlloc) {
  TestPlatform platform;
  const PlatformScope scope(platform);
  const auto extender = std::make_shared<OddExtender>([]() -> Variant { throw std::bad_alloc(); });
  EXPECT_THROW(ShowPropertyPages(extender, "Titel", 0), std::bad_alloc);
}

}  // namespace
}  // namespace kvo
