// Finding a page's controls, and ignoring what only looks like one.
#include "PageTesting.h"

namespace kvo::page {
namespace {

struct ScannerCase {
  const char* name;
  std::string page;  // "@1" to "@9" stand for print controls with these values
  List found;
};

void PrintTo(const ScannerCase& c, std::ostream* out) { *out << c.page; }

std::string WithControls(std::string page) {
  for (std::size_t at = 0; (at = page.find('@', at)) != std::string::npos;) {
    const std::string control = PrintElement(page.substr(at + 1, 1));
    page.replace(at, 2, control);
    at += control.size();
  }
  return page;
}

class Scanning : public PageTest, public ::testing::WithParamInterface<ScannerCase> {};

TEST_P(Scanning, FindsExactlyTheControls) {
  const std::string page = WithControls(GetParam().page);
  EXPECT_EQ(ValuesIn(page), GetParam().found) << page;
  // The other controls are all misplaced.
  const auto written =
      static_cast<std::size_t>(std::count(GetParam().page.begin(), GetParam().page.end(), '@'));
  const Problems misplaced = Inspect(Page(page)).problems;
  EXPECT_EQ(misplaced.size(), written - GetParam().found.size());
  for (const Problem& problem : misplaced) EXPECT_EQ(problem.rule, rule::misplacedControl);
}

const ScannerCase kScannerCases[] = {
    {"Nothing", "", {}},
    {"TextAlone", "a < b > c & d", {}},
    {"OneControl", "@1", {"1"}},
    {"ControlsSideBySide", "@1@2", {"1", "2"}},
    {"BetweenTableRows", "<table>@1<tr><td>@2</td></tr>@3</table>", {"1", "2", "3"}},
    {"AfterLoneAngle", "a <@1", {"1"}},
    {"AfterManyAngles", "<<<<@1", {"1"}},
    {"AfterEmptyEndTag", "</>@1", {"1"}},
    {"InAttributeOfAnotherTag", "<a title='@1'>@2</a>", {"2"}},
    {"AfterQuotedGreaterThan", "<a title=\"a>b\">@1</a>", {"1"}},
    {"QuoteInUnquotedValueIsNoQuote", "<a title=a\"b>@1<b title=\">\">", {"1"}},
    {"QuoteAsNameIsNoQuote", "<a \">@1<b title=\">\">", {"1"}},
    {"EqualsAsNameTakesNoValue", "<a =\">@1<b title=\">\">", {"1"}},
    {"EqualsInTagNameTakesNoValue", "<a=\">@1<b title=\">\">", {"1"}},
    {"EqualsInEndTagNameTakesNoValue", "</a=\">@1<b title=\">\">", {"1"}},
    {"EqualsAfterSlashTakesNoValue", "<a b/=\">@1<b title=\">\">", {"1"}},
    {"SpaceAroundEquals", "<a title = \"@1\">@2", {"2"}},
    {"QuotedEndTag", "</a title=\">\">@1", {"1"}},
    {"NulInTag", std::string("<a\0b title=\">\">@1", 17), {"1"}},
    {"QuoteThatNeverCloses", "@1<a title=\"@2", {"1"}},
    {"TagThatNeverEnds", "@1<a @2", {"1"}},

    {"Comment", "<!-- @1 -->@2", {"2"}},
    {"CommentOfTwoDashes", "<!---->@1", {"1"}},
    {"CommentAtOnceClosed", "<!-->@1", {"1"}},
    {"CommentClosedByOneDash", "<!--->@1", {"1"}},
    {"CommentClosedByBang", "<!-- @1 --!>@2", {"2"}},
    {"BangRightAfterStartIsNoEnd", "<!--!>@1-->@2", {"2"}},
    {"BangAfterOneDashIsNoEnd", "<!---!>@1-->@2", {"2"}},
    {"BangAfterTwoDashesIsAnEnd", "<!----!>@1", {"1"}},
    {"SpacedDashesAreNoEnd", "<!-- -- > @1 -->@2", {"2"}},
    {"CommentThatNeverEnds", "@1<!-- @2", {"1"}},
    {"ConditionalComment", "<!--[if mso]>@1<![endif]-->@2", {"2"}},
    {"RevealedConditional", "<![if !mso]>@1<![endif]>@2", {"1", "2"}},
    {"BogusCommentByQuestionMark", "<? @1 ?>@2", {"2"}},
    {"BogusCommentByBang", "<! a>@1", {"1"}},
    {"BogusCommentBySlash", "</ a>@1", {"1"}},
    {"DocumentType", "<!DOCTYPE html PUBLIC \"a\" 'b'>@1", {"1"}},
    {"CDataInHtmlIsABogusComment", "<![CDATA[ a>@1]]>@2", {"1", "2"}},
    {"CDataInSvg", "<svg><![CDATA[ > @1 ]]>@2", {"2"}},
    {"CDataInMath", "<Math><mi/><![CDATA[ > @1 ]]>@2", {"2"}},
    {"CDataThatNeverEnds", "@1<svg><![CDATA[ a>@2", {"1"}},
    {"CDataBehindSvg", "<svg></svg ><![CDATA[ a>@1]]>", {"1"}},
    {"CDataBehindEmptySvg", "<svg/><![CDATA[ a>@1]]>", {"1"}},
    {"CDataInNestedSvg", "<svg><svg></svg></math><![CDATA[ a>@1]]>@2", {"2"}},
    {"CDataBehindMath", "</svg><math></math><![CDATA[ a>@1]]>@2", {"1", "2"}},
    {"CDataInLongerName", "<svgs><![CDATA[ a>@1]]>@2", {"1", "2"}},
    {"CDataInSvgOfAComment", "<!--<svg>--><![CDATA[ a>@1]]>@2", {"1", "2"}},

    {"Script", "<script>@1</script>@2", {"2"}},
    {"ScriptInCapitals", "<SCRIPT type='x'>@1</Script >@2", {"2"}},
    {"ScriptEndNeedsItsName", "<script>@1</scripty></scrip>@2</script>@3", {"3"}},
    {"ScriptWithComment", "<script><!-- </script>@1", {"1"}},
    {"ScriptInScriptComment", "<script><!-- <script>@1</script>@2--></script>@3", {"3"}},
    {"ScriptCommentEnds", "<script><!-- <script>@1--></script>@2", {"2"}},
    {"ScriptCommentAtOnceClosed", "<script><!--><script></script>@1", {"1"}},
    {"ScriptThatNeverEnds", "@1<script>@2", {"1"}},
    {"Style", "<style>@1</style>@2", {"2"}},
    {"Textarea", "<textarea>@1</textarea>@2", {"2"}},
    {"Title", "<title>@1</title>@2", {"2"}},
    {"TitleEndBySlash", "<title>@1</title/>@2", {"2"}},
    {"NoFrames", "<noframes>@1</noframes>@2", {"2"}},
    {"NoEmbed", "<noembed>@1</noembed>@2", {"2"}},
    {"IFrame", "<IFRAME src=x>@1</iframe>@2", {"2"}},
    {"Xmp", "<xmp>@1</xmp>@2", {"2"}},
    {"PlainText", "@1<plaintext>@2</plaintext>@3", {"1"}},
    {"NoScriptIsNoRawText", "<noscript>@1</noscript>@2", {"1", "2"}},
    {"SlashDoesNotCloseRawText", "<title/>@1</title>@2", {"2"}},
    {"SlashClosesRawTextInSvg", "<svg><title/>@1</svg>@2", {"1", "2"}},
    {"RawTextIgnoresComments", "<title><!-- </title>@1", {"1"}},
    {"OtherNamesAreNoRawText", "<titles>@1</titles><st>@2", {"1", "2"}},
    {"EndTagAloneIsNoRawText", "</script>@1", {"1"}},

    {"ForeignObject", "<object data='x.swf'><param name=a value=b></object>@1", {"1"}},
    {"ForeignClass",
     "<object classid=\"clsid:D27CDB6E-AE6D-11CF-96B8-444553540000\"></object>@1",
     {"1"}},
    {"ForeignLibrary",
     "<object classid='progid:KVOPDesignObjectsExtra.DTCPrint'></object>@1",
     {"1"}},
    {"InsideForeignObject", "<object data=x>@1<embed src=y>@2</object>", {"1", "2"}},
    {"LongerTagName", "<objects classid='progid:KVOPDesignObjects.DTCPrint'>@1", {"1"}},
};

INSTANTIATE_TEST_SUITE_P(Page, Scanning, ::testing::ValuesIn(kScannerCases),
                         [](const auto& test) { return std::string(test.param.name); });

class Elements : public PageTest {};

TEST_F(Elements, MayHaveAnyQuotesOrderAndCase) {
  EXPECT_EQ(ValuesIn("<OBJECT ID=a ClassId='ProgID:kvopdesignobjects.dtcprint' >"
                     "\r\n\t<PARAM VALUE = 'x' NAME = value />\n</PARAM></OBJECT >"),
            List{"x"});
}

TEST_F(Elements, AreAlsoKnownByTheirClassId) {
  for (const char* id : {"clsid:6F1B5C0E-6B0A-4B57-9C55-0F6D1C6A7E01",
                         "CLSID:{6f1b5c0e-6b0a-4b57-9c55-0f6d1c6a7e01}"}) {
    const std::string page =
        "<object classid='" + std::string(id) + "'><param name=value value=x>" + "</object>";
    EXPECT_EQ(Saved(page), Span(StoredPrint("x"), "<kv:print value=\"x\"/>"));
  }
}

TEST_F(Elements, AreKnownThroughCharacterReferencesInTheClassId) {
  EXPECT_EQ(ValuesIn("<object classid=\"progid&colon;KVOPDesignObjects&#46;DTCPrint\">"
                     "<param name=\"v&#97;lue\" value=x></object>"),
            List{"x"});
}

TEST_F(Elements, HavePlaceIdAttributesAndBag) {
  const Inspection inspection =
      Inspect(Page("a\r\n\xC3\xBC<object classid=progid:KVOPDesignObjects.DTCPrint id=Preis "
                   "Width=\"1&amp;2\" declare><param name=format value=f><param name=value "
                   "value=v></object>"));
  ASSERT_EQ(inspection.controls.size(), 1U);
  const FoundControl& control = inspection.controls[0];
  EXPECT_EQ(control.place, (Place{2, 2}));
  EXPECT_EQ(control.className, "DTCPrint");
  ASSERT_NE(control.contract, nullptr);
  EXPECT_EQ(control.id, "Preis");
  EXPECT_EQ(control.form, Form::element);
  ASSERT_EQ(control.attributes.size(), 2U);
  EXPECT_EQ(control.attributes[0].name, "Width");
  EXPECT_EQ(control.attributes[0].value, "1&2");
  EXPECT_EQ(control.attributes[1].name, "declare");
  EXPECT_EQ(control.attributes[1].value, std::nullopt);
  EXPECT_EQ(control.bag, (std::vector<MemoryBag::Entry>{{"format", "f"}, {"value", "v"}}));
}

TEST_F(Elements, InSpansHaveTheTextBetweenTheComments) {
  const std::string page = "x" + Span(PrintElement("v"), "old <b>text</b>", 7) + "y";
  const Inspection inspection = Inspect(Page(page));
  ASSERT_EQ(inspection.controls.size(), 1U);
  EXPECT_EQ(inspection.controls[0].form, Form::span);
  const FoundControl& control = inspection.controls[0];
  EXPECT_EQ(page.substr(control.textBegin, control.textEnd - control.textBegin), "old <b>text</b>");
  EXPECT_EQ(inspection.controls[0].begin, 1U);
  EXPECT_EQ(inspection.controls[0].end, page.size() - 1);
}

TEST_F(Elements, InTheTextOfASpanAreNotParsed) {
  const std::string text = "<object classid='progid:KVOPDesignObjects.Nope'><!-- <script> \"";
  EXPECT_EQ(ValuesIn(Span(PrintElement("1"), text) + PrintElement("2")), (List{"1", "2"}));
}

}  // namespace
}  // namespace kvo::page
