// Compares the scanner with a byte-by-byte reader, for all short pages made of awkward pieces and
// many long ones.
#include <gtest/gtest.h>

#include <array>
#include <random>
#include <string>

#include "fuzz/ScannerRules.h"

namespace kvo::page {
namespace {

constexpr std::array<std::string_view, 12> kPieces = {"<a", "<object>", "</b", " ", "=",    "\"",
                                                      "'",  ">",        "/",   "x", "<!--", "--"};

TEST(ScannerSweep, MatchesAPlainReaderInAllShortPages) {
  constexpr std::size_t kLongest = 5;
  std::size_t pages = 0;
  std::array<std::size_t, kLongest> choice{};
  for (std::size_t length = 0; length <= kLongest; ++length) {
    choice.fill(0);
    for (bool more = true; more;) {
      std::string page;
      for (std::size_t i = 0; i < length; ++i) page += kPieces[choice[i]];
      page += "<object>";
      ASSERT_EQ(ScannerDifference(page), "") << page;
      ++pages;
      more = false;
      for (std::size_t i = 0; i < length && !more; ++i) {
        choice[i] = (choice[i] + 1) % kPieces.size();
        more = choice[i] != 0;
      }
    }
  }
  EXPECT_EQ(pages, 271'453U);  // the sum of 12^0 to 12^5
}

// Long enough for pieces on both sides of every boundary that the scanner uses.
TEST(ScannerSweep, MatchesAPlainReaderInLongPages) {
  constexpr std::string_view kLongPieces[] = {"<a href=\"x\">",
                                              "</a>",
                                              "<td class='y' id=\"z\">",
                                              " data-of-a-long-name=\"1\"",
                                              "<object>",
                                              "<script>",
                                              "</script>",
                                              "<script",
                                              "<style>",
                                              "</style>",
                                              "<TITLE>",
                                              "</title >",
                                              "<textarea",
                                              "</textarea",
                                              "<!--",
                                              "-->",
                                              "--!>",
                                              "-",
                                              "<![CDATA[",
                                              "<svg>",
                                              "</svg>",
                                              "<svg/>",
                                              "<MATH x='y'>",
                                              "</math >",
                                              "<title/>",
                                              "<noframes>",
                                              "</noframes>",
                                              "<iframe src=a>",
                                              "</iframe>",
                                              "<xmp>",
                                              "</xmp>",
                                              "<noembed></noembed",
                                              "<plaintex",
                                              "]]>",
                                              "<!KVO",
                                              "<?x",
                                              "<",
                                              ">",
                                              "\"",
                                              "'",
                                              "=",
                                              " ",
                                              "text, \xC3\xBC ",
                                              "<!--KVO CONTROL STARTSPAN 1 ",
                                              "<!--KVO CONTROL ENDSPAN 1-->"};
  std::mt19937 random(20260101);
  for (int round = 0; round < 4000; ++round) {
    std::string page;
    const std::size_t pieces = 10 + random() % 100;
    for (std::size_t i = 0; i < pieces; ++i) page += kLongPieces[random() % std::size(kLongPieces)];
    if (round % 50 == 0) page += "<plaintext><object></plaintext>";
    ASSERT_EQ(ScannerDifference(page), "") << page;
  }
}

}  // namespace
}  // namespace kvo::page
