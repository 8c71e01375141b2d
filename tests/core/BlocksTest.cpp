// Compares the block functions with the plain loops that define them, at every distance from the
// ends of a block.
#include "common/text/Blocks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "common/text/modGlobal.h"
#include "tests/core/Definitions.h"

namespace kvo {
namespace {

constexpr std::size_t kLongest = 3 * kBlock + 1;

// Calls `check` with texts of all lengths: without the wanted character, and with it at every
// place.
template <class Check>
void ForEveryPlace(const Check& check) {
  for (std::size_t size = 0; size <= kLongest; ++size) {
    const std::string plain(size, 'x');
    check(plain);
    for (std::size_t at = 0; at < size; ++at) {
      std::string text = plain;
      text[at] = at % 2 == 0 ? '<' : '\xE4';
      if (at + 2 < size) text[at + 2] = '<';
      check(text);
    }
  }
}

TEST(Blocks, FindAnyFindsWhatAPlainLoopFinds) {
  ForEveryPlace([](const std::string& text) {
    const char* const end = text.data() + text.size();
    const char* const found = FindAny<'<', '\xE4'>(text.data(), end);
    EXPECT_EQ(found, std::find_if(text.data(), end, IsAny<'<', '\xE4'>));
  });
}

TEST(Blocks, CopyUpToWritesNothingPastTheText) {
  ForEveryPlace([](const std::string& text) {
    std::string copy(text.size() + kBlock, '?');
    const std::size_t size = CopyUpTo<'<', '\xE4'>(text.data(), text.size(), copy.data());
    EXPECT_EQ(size, std::min(text.find_first_of("<\xE4"), text.size()));
    EXPECT_EQ(copy.substr(0, size), text.substr(0, size));
    EXPECT_EQ(copy.substr(text.size()), std::string(kBlock, '?'));
  });
}

TEST(Blocks, PlacesReturnsEveryPlaceInOrder) {
  std::mt19937 random(20260102);
  for (std::size_t round = 0; round < 2000; ++round) {
    std::string text;
    while (text.size() < round % 300) text += "<\xE4  xxxx"[random() % (round % 7 + 2)];
    const char* const end = text.data() + text.size();
    Places<'<', '\xE4'> places(text.data(), end);
    for (const char* at = text.data(); at != end;) {
      at = std::find_if(at, end, IsAny<'<', '\xE4'>);
      ASSERT_EQ(places.Next(), at) << round;
      if (at == end) break;
      ++at;
      if (random() % 4 != 0) continue;
      at += random() % (static_cast<std::size_t>(end - at) + 1);
      places.SeekTo(at);
    }
    EXPECT_EQ(places.Next(), end);
  }
}

// Moves characters that are processed together across every block boundary.
TEST(Blocks, HelpersMatchTheirDefinitionsInLongTexts) {
  const std::string piece = "]<![CDATA[]>\r\n&am&amp;\"\r<![CDATA[\n]]>kv:@kv:@lt;kv:@br;>";
  for (std::size_t before = 0; before < 4200; before += before < 1100 ? 1 : 3) {
    const std::string plain(before, 'x');
    const std::string text = plain + piece + piece;
    ASSERT_EQ(EncodeMarkupTokens(text), EncodeByDefinition(text)) << before;
    ASSERT_EQ(DecodeMarkupTokens(text), DecodeByDefinition(text)) << before;
    ASSERT_EQ(EncodeHtmlEntities(text), EntitiesByDefinition(text)) << before;
    ASSERT_EQ(FixAmpersands(plain + "&&ampx&amp;y&am"), plain + "&amp;&amp;ampx&amp;y&am")
        << before;
  }
}

}  // namespace
}  // namespace kvo
