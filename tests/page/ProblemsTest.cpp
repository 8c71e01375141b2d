// Every kind of problem, with its place. All problems are found at once.
#include <iterator>
#include <random>

#include "PageTesting.h"
#include "document/page/ProblemList.h"

namespace kvo::page {
namespace {

struct ProblemCase {
  const char* name;
  std::string page;
  List problems;
};

void PrintTo(const ProblemCase& c, std::ostream* out) { *out << c.page; }

class Finding : public PageTest, public ::testing::WithParamInterface<ProblemCase> {};

TEST_P(Finding, ReportsPlaceAndRuleAndSavesNothing) {
  EXPECT_EQ(Checked(GetParam().page), GetParam().problems) << GetParam().page;
  EXPECT_EQ(Saved(GetParam().page), "(not saved)");
  EXPECT_EQ(Published(GetParam().page), "(not published)");
  for (const Problem& problem : problems) {
    EXPECT_NE(problem.message.german, "");
    EXPECT_NE(problem.message.english, "");
    EXPECT_NE(problem.message.german, problem.message.english);
    if (problem.end == 0) continue;
    EXPECT_GT(problem.end, problem.offset);
    EXPECT_LE(problem.end, GetParam().page.size());
  }
}

const std::string kStart = "<!--KVO CONTROL STARTSPAN 1 ";
const std::string kEnd = "<!--KVO CONTROL ENDSPAN 1-->";
const std::string kOpen = "<object classid=\"progid:KVOPDesignObjects.DTCPrint\">";
const std::string kPrint = PrintElement("x");
const std::string kMark = "\xEF\xBB\xBF";
const std::string kText = "<kv:print value=\"x\"/>";

const ProblemCase kCases[] = {
    {"UnknownClass", "\n  " + Element("", "DTCPrnt"), {"2:3 unknown-class"}},
    {"NoClass", "<object classid=progid:KVOPDesignObjects></object>", {"1:1 unknown-class"}},
    {"UnknownClassInSpan", "x" + Span(Element("", "Nope"), ""), {"1:30 unknown-class"}},
    {"UnknownKey", Element("\n" + Param("Value", "x")), {"2:1 unknown-key"}},
    {"DuplicateParam",
     Element(Param("value", "x") + "\n" + Param("value", "y")),
     {"2:1 duplicate-param"}},
    {"ParamWithoutName", Element("\n<param value=x>"), {"2:1 malformed-param"}},
    {"ParamWithEmptyName", Element("\n<param name='' value=x>"), {"2:1 malformed-param"}},
    {"ParamWithoutValue", Element("\n<param name=format>"), {"2:1 malformed-param"}},
    {"ParamWithBareValue", Element("\n<param name=format value>"), {"2:1 malformed-param"}},
    {"ParamWithAttribute", Element("<param name=format\ntype=a value=x>"), {"2:1 malformed-param"}},
    {"ParamWithTwoValues",
     Element("<param name=format value=a\nvalue=x>"),
     {"2:1 malformed-param"}},
    {"TwoIds",
     "<object classid=progid:KVOPDesignObjects.DTCPrint id=a\nid=b></object>",
     {"2:1 attribute"}},
    {"TwoClassIds",
     "<object classid=progid:KVOPDesignObjects.DTCPrint\nCLASSID=b></object>",
     {"2:1 attribute"}},
    {"TwoWidths",
     "<object classid=progid:KVOPDesignObjects.DTCPrint width=1 a=b WIDTH=1></object>",
     {"1:1 attribute"}},
    {"AttributeThatIsAQuote",
     "<object classid=progid:KVOPDesignObjects.DTCPrint \"></object>",
     {"1:1 attribute"}},
    {"TextInControl",
     Element("\n" + Param("value", "x") + "a\n" + Param("Value", "")),
     {"2:31 unexpected-content", "3:1 unknown-key"}},
    {"CommentInControl", Element("\n<!-- a --><!-- b -->"), {"2:1 unexpected-content"}},
    {"TagInControl", Element("\n<b>"), {"2:1 unexpected-content"}},
    {"AttributeOfEndTag", kOpen + "</object\na>", {"2:1 unexpected-content"}},
    {"Unclosed", "a" + kOpen, {"1:2 unclosed-control"}},
    {"UnclosedBeforeNext", kOpen + kPrint, {"1:1 unclosed-control"}},
    {"UnclosedBeforeSpan", kOpen + Span(kPrint, kText), {"1:1 unclosed-control"}},
    {"UnclosedStartTag",
     "a<object classid=progid:KVOPDesignObjects.DTCPrint id='",
     {"1:2 unclosed-control"}},
    {"UnclosedParam", kOpen + "<param name='value' value=\"x></object>", {"1:1 unclosed-control"}},

    {"SpanWithoutNumber", "\n<!--KVO CONTROL STARTSPAN " + kPrint + "-->", {"2:1 malformed-span"}},
    {"SpanWithNumberZero", "<!--KVO CONTROL STARTSPAN 0 " + kPrint + "-->", {"1:1 malformed-span"}},
    {"SpanWithLeadingZero",
     "<!--KVO CONTROL STARTSPAN 01 " + kPrint + "-->",
     {"1:1 malformed-span"}},
    {"SpanWithLongNumber",
     "<!--KVO CONTROL STARTSPAN 1234567890 " + kPrint + "-->",
     {"1:1 malformed-span"}},
    {"SpanWithoutControl", kStart + "-->", {"1:1 malformed-span"}},
    {"SpanOfForeignObject", kStart + "<object data=x></object>-->", {"1:1 malformed-span"}},
    {"SpanOfForeignObjectAndEnd",
     kStart + "<object data=x></object>-->\n" + kEnd,
     {"1:1 malformed-span", "2:1 stray-end"}},
    {"SpanThatGoesOn", kStart + kPrint + "a-->" + kText + kEnd, {"1:120 malformed-span"}},
    {"SpanWithTextInControl", kStart + Element("\na") + "-->" + kEnd, {"2:1 unexpected-content"}},
    {"SpanUnclosed", kStart + kOpen + "-->" + kEnd, {"1:1 unclosed-control"}},
    {"SpanEndsInsideAValue", kStart + PrintElement("\n-->") + "-->" + kEnd, {"2:1 malformed-span"}},
    {"SpanEndsInsideAValueByBang",
     kStart + PrintElement("\n--!>") + "-->" + kEnd,
     {"2:2 malformed-span"}},
    {"SpanEndsInsideATag",
     kStart + kOpen + "<param name=value value=x\n-->" + "</object>-->" + kEnd,
     {"2:1 malformed-param", "2:1 malformed-span"}},
    {"SpanCommentNeverEnds", "\n" + kStart + kPrint, {"2:1 malformed-span"}},
    {"SpanCutOffInTag",
     kStart + "<object classid=progid:KVOPDesignObjects.DTCPrint id='-->",
     {"1:1 missing-end", "1:29 unclosed-control"}},
    {"MissingEnd", "\n" + kStart + kPrint + "-->" + kText, {"2:1 missing-end"}},
    {"OtherEnd",
     kStart + kPrint + "-->\n" + "<!--KVO CONTROL ENDSPAN 2-->",
     {"1:1 missing-end", "2:1 stray-end"}},
    {"EndOfAnotherControl",
     kStart + kPrint + "-->" + kText + "\n" + Span(kPrint, kText),
     {"1:1 missing-end"}},
    {"EndOfAnotherControlAfterABrokenOne",
     kStart + Element(Param("a", "")) + "-->" + kText + "\n" + Span(Element(Param("b", "")), kText),
     {"1:81 unknown-key", "2:81 unknown-key"}},
    {"StrayEnd", "a\n " + kEnd, {"2:2 stray-end"}},

    {"InvalidByteInValue",
     kMark + Element("\n<param name=value value='a\xFF'>"),
     {"2:27 invalid-bytes"}},
    {"InvalidByteInId",
     kMark + "<object classid=progid:KVOPDesignObjects.DTCPrint id='\xC3'></object>",
     {"1:55 invalid-bytes"}},
    {"Failing",
     "\n" + Element(Param("value", "td") + Param("attributes", "a"), "DTCElement"),
     {"2:1 control-fails"}},
    {"FailingLoad",
     Element(Param("opening-tag-only", "maybe"), "DTCElement"),
     {"1:1 control-fails"}},
    {"SeveralAtOnce",
     Element("", "Nope") + "\n" + Element(Param("x", "")) + "\n" + kEnd + kOpen,
     {"1:1 unknown-class", "2:53 unknown-key", "3:1 stray-end", "3:29 unclosed-control"}},
    {"Utf16", std::string("\xFF\xFE<\0", 4), {"1:1 encoding"}},
    {"Utf16BigEndian", std::string("\xFE\xFF\0<", 4), {"1:1 encoding"}},
    {"OtherCharset", "<meta charset=koi8-r>\n" + kPrint + kPrint, {"2:1 encoding"}},
};

INSTANTIATE_TEST_SUITE_P(Page, Finding, ::testing::ValuesIn(kCases),
                         [](const auto& test) { return std::string(test.param.name); });

using Messages = PageTest;

TEST_F(Messages, NameFilePlaceControlAndRuleInBothLanguages) {
  Checked(
      "\n<object classid=progid:KVOPDesignObjects.DTCPrint id=Preis><param name=vlaue value=x>"
      "</object>");
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_EQ(Describe(problems[0], "a.html", Language::german),
            "a.html:2:60: Fehler: DTCPrint \"Preis\": Den Schlüssel \"vlaue\" kennt dieses Control "
            "nicht. Berichtigen oder löschen Sie den param. Meinten Sie \"value\"? [unknown-key]");
  EXPECT_EQ(Describe(problems[0], "a.html", Language::english),
            "a.html:2:60: error: DTCPrint \"Preis\": This control does not know the key \"vlaue\". "
            "Correct or delete the param. Did you mean \"value\"? [unknown-key]");
}

TEST_F(Messages, SuggestTheNearestClass) {
  Checked(Element("", "DTCProductlist"));
  ASSERT_EQ(problems.size(), 0U) << "case does not matter";
  Checked(Element("", "DTCProdcutList"));
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_EQ(problems[0].control, "DTCProdcutList");
  EXPECT_NE(problems[0].message.german.find("Meinten Sie \"DTCProductList\"?"), std::string::npos);
}

TEST_F(Messages, SuggestNothingWithoutASimilarName) {
  Checked(Element("", "Calendar") + Element(Param("colour-of-hair", "")));
  ASSERT_EQ(problems.size(), 2U);
  for (const Problem& problem : problems)
    EXPECT_EQ(problem.message.german.find("Meinten Sie"), std::string::npos)
        << problem.message.german;
}

TEST_F(Messages, AboutAnInvalidClassDoNotNameThePreviousControl) {
  Checked(kMark + "<object classid=progid:KVOPDesignObjects.DTCViewtracker id=Zaehler></object>" +
          Element("", "DTC\xFF"));
  ASSERT_EQ(problems.size(), 2U);
  EXPECT_EQ(problems[0].rule, rule::unknownClass);
  EXPECT_EQ(problems[0].id, "");
  EXPECT_EQ(problems[1].rule, rule::invalidBytes);
  EXPECT_EQ(problems[1].control + problems[1].id, "");
}

TEST_F(Messages, NameTheRunTimeErrorOfAFailingControl) {
  Checked(Element(Param("value", "td") + Param("attributes", "a"), "DTCElement"));
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_NE(problems[0].message.english.find("Run-time error 9: Subscript out of range"),
            std::string::npos);
}

TEST_F(Messages, TruncateLongTextsBetweenCharacters) {
  std::string umlauts;
  for (int i = 0; i < 100; ++i) umlauts += "\xC3\xBC";
  Checked(Element(Param("a" + umlauts, "")));
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_NE(problems[0].message.english.find("\xC3\xBC...\""), std::string::npos)
      << problems[0].message.english;
}

TEST_F(Messages, NameTheBeginningOfALongId) {
  std::string umlauts = "x";
  for (int i = 0; i < 100'000; ++i) umlauts += "\xC3\xBC";
  Checked("<object classid=progid:KVOPDesignObjects.DTCPrint id=" + umlauts +
          "><param a></object>");
  ASSERT_EQ(problems.size(), 2U);
  for (const Problem& problem : problems) EXPECT_EQ(problem.id, umlauts.substr(0, 99) + "...");
}

// The report when there are many problems.

TEST(ProblemRange, CoversWhatTheProblemIsAbout) {
  const auto covered = [](const std::string& page) {
    const Problems problems = Inspect(Page(page)).problems;
    return problems.empty() ? ""
                            : page.substr(problems[0].offset, problems[0].end - problems[0].offset);
  };
  EXPECT_EQ(covered("a" + Element("", "DTCPrnt")),
            "<object classid=\"progid:KVOPDesignObjects.DTCPrnt\">");
  EXPECT_EQ(covered(Element(Param("Value", "x"))), Param("Value", "x"));
  EXPECT_EQ(covered(Element("<param name=format type=a value=x>")), "type=a");
  EXPECT_EQ(covered("<object classid=progid:KVOPDesignObjects.DTCPrint id=a id=b></object>"),
            "id=b");
  EXPECT_EQ(covered(Element("Preis\n" + Param("value", "x"))), "Preis");
  EXPECT_EQ(covered("x" + kEnd + "y"), kEnd);
  EXPECT_EQ(covered(kStart + kPrint + "-->" + kText), kStart + kPrint + "-->");
  EXPECT_EQ(covered("<!--" + kPrint + "-->"), kPrint);
}

Problem ProblemOf(std::string_view rule, std::size_t line, Severity severity = Severity::error) {
  return {severity, rule, {line, 1}, "DTCPrint", "", {"falsch", "wrong"}, line, 0};
}

TEST(Telling, KeepsTenOfAKind) {
  Problems problems;
  for (std::size_t line = 1; line <= 10; ++line) {
    problems.push_back(ProblemOf(rule::unknownKey, line));
    problems.push_back(ProblemOf(rule::duplicateId, line, Severity::warning));
  }
  const Problems told = Told(problems);
  ASSERT_EQ(told.size(), problems.size());
  for (const Problem& problem : told) EXPECT_EQ(problem.more, 0U);
}

TEST(Telling, CountsTheOthersAtTheFirstOfThem) {
  Problems problems;
  for (std::size_t line = 1; line <= 8000; ++line) {
    problems.push_back(ProblemOf(rule::unknownKey, line));
    if (line % 100 == 0) problems.push_back(ProblemOf(rule::duplicateId, line, Severity::warning));
  }
  const Problems told = Told(problems);
  ASSERT_EQ(told.size(), 22U);
  EXPECT_EQ(Describe(told[10], "a", Language::english),
            "a:11:1: error: ... and 7,990 more of this kind. [unknown-key]");
  EXPECT_EQ(Describe(told[10], "a", Language::german),
            "a:11:1: Fehler: ... und 7.990 weitere dieser Art. [unknown-key]");
  EXPECT_EQ(Describe(told[21], "a", Language::english),
            "a:1100:1: warning: ... and 70 more of this kind. [duplicate-id]");
}

using Checking = PageTest;

TEST_F(Checking, WarnsAboutADuplicateId) {
  const std::string control = "<object classid=progid:KVOPDesignObjects.DTCPrint id=a></object>\n";
  EXPECT_EQ(Checked(control + control), List{"2:1 duplicate-id?"});
  Saved(control + control);
  EXPECT_EQ(problems.size(), 0U);
}

TEST_F(Checking, CountsColumnsInCharactersAndAcceptsAnyLineEnd) {
  const std::string stray = "<!--KVO CONTROL ENDSPAN 1-->";
  EXPECT_EQ(Checked("\xEF\xBB\xBF\xC3\xBC\xF0\x9F\x92\x8C" + stray), List{"1:3 stray-end"});
  EXPECT_EQ(Checked("\r\r\n\n" + stray), List{"4:1 stray-end"});
  EXPECT_EQ(Checked("\xC3\xBC<meta charset=latin1>" + stray), List{"1:24 stray-end"});
  EXPECT_EQ(Checked("\xFF\xFF" + stray), (List{"1:1 undeclared-encoding?", "1:3 stray-end"}));
}

TEST_F(Checking, FindsNothingInAGoodPage) {
  EXPECT_EQ(Checked("<p>" + Span(StoredPrint("x"), "<kv:print value=\"x\"/>")), List{});
}

// Counts as the rule says, one character after the other.
Place CountedPlace(std::string_view page, const PageEncoding& encoding, std::size_t offset) {
  Place place;
  for (std::size_t at = PageEncoding::Mark(page); at < offset;) {
    const char c = page[at];
    if (c == '\n' || (c == '\r' && page.substr(at + 1, 1) != "\n")) {
      ++place.line;
      place.column = 1;
      ++at;
    } else {
      ++place.column;
      at += encoding.CharacterLength(page.substr(at));
    }
  }
  return place;
}

TEST(Places, AreCountedByLinesAndCharacters) {
  constexpr std::string_view kPieces[] = {
      "\r", "\n", "\r\n", "a", "\xC3\xA4", "\xE2\x82\xAC", "\xFF", "a long line of text "};
  std::mt19937 random(1);
  for (int round = 0; round < 300; ++round) {
    std::string page = round % 3 == 0 ? "\xEF\xBB\xBF" : "";
    for (int piece = 0; piece < 30; ++piece) page += kPieces[random() % std::size(kPieces)];
    const PageEncoding encoding = PageEncoding::Of(page);
    PlaceFinder places(page, encoding);
    for (std::size_t offset = PageEncoding::Mark(page); offset <= page.size();
         offset += random() % 4) {
      const Place expected = CountedPlace(page, encoding, offset);
      ASSERT_EQ(places.At(offset), expected) << round << ' ' << offset;
      ASSERT_EQ(PlaceFinder(page, encoding).At(offset), expected) << round << ' ' << offset;
    }
  }
}

}  // namespace
}  // namespace kvo::page
