#include "document/uses/Uses.h"

#include <gtest/gtest.h>

#include "host/headless/HeadlessPlatform.h"
#include "tests/uses/Elements.h"

namespace kvo::uses {
namespace {

// Each use of a field as "NAME FORM line:column PROPERTY".
std::vector<std::string> FieldUses(const std::string& text) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  const page::Page page(text);
  const PageUses found = FindUses(page);
  std::vector<std::string> lines;
  for (const Use& use : found.uses) {
    if (!IsField(use.name)) continue;
    const char* const form = use.form == Form::value  ? "value"
                             : use.form == Form::path ? "path"
                             : use.form == Form::tag  ? "tag"
                                                      : "word";
    std::string line = Written(use.name) + ' ' + form + ' ' + std::to_string(use.place.line) + ':' +
                       std::to_string(use.place.column);
    if (!use.property.empty()) line += ' ' + use.property;
    lines.push_back(line);
    EXPECT_LE(use.end, text.size());
    EXPECT_EQ(use.property.empty(), use.control == Use::kNoControl);
  }
  return lines;
}
using Lines = std::vector<std::string>;

TEST(UsesTest, FindsFieldsOfControls) {
  EXPECT_EQ(FieldUses(Control("DTCContact", "\n" + Param("field", "City"))),
            Lines{"customer.City value 2:28 Field"});
  EXPECT_EQ(FieldUses(Control("DTCOrder", "\n" + Param("field", "Total"))),
            Lines{"order.Total value 2:28 Field"});
  EXPECT_EQ(FieldUses(Control("DTCContact", "\n" + Param("field", "Stra&szlig;e"))),
            Lines{"customer.Straße value 2:28 Field"});
  EXPECT_EQ(FieldUses(Control("DTCContact", Param("field", ""))), Lines{});
}

TEST(UsesTest, FindsNamesInScripts) {
  EXPECT_EQ(
      FieldUses(Control("DTCScript", "\n" + Param("html-content",
                                                  "if (customer.Age kv:@gt; 9) "
                                                  "set(kv:@quot;akv:@quot;,order.Total-1);"))),
      (Lines{"customer.Age word 2:48 HTMLContent", "order.Total word 2:93 HTMLContent"}));
  // Longer paths, calls and ends of other names are no fields.
  EXPECT_EQ(FieldUses(Control("DTCScript", Param("html-content",
                                                 "mycustomer.A; my.customer.A; customer.A.B; "
                                                 "customer.Count(); customer.; order.1"))),
            Lines{});
  EXPECT_EQ(FieldUses("<p>customer.A <kv:script>x = customer.A;</kv:script> customer.A"),
            Lines{"customer.A word 1:39"});
  EXPECT_EQ(FieldUses(Control("DTCScript", Param("html-content", "y(#customer.A#)"))).size(), 1U);
}

TEST(UsesTest, FindsPathsInPropertiesOfControls) {
  EXPECT_EQ(FieldUses(Control("DTCPrint", "\n" + Param("value", "%#order.Total#*2%"))),
            Lines{"order.Total path 2:36 Value"});
  EXPECT_EQ(FieldUses(Control("DTCIf", "\n" + Param("test", "#customer.Age#&gt;18"))),
            Lines{"customer.Age path 2:37 Test"});
  EXPECT_EQ(FieldUses(Control("DTCElement", "\n" + Param("attributes", "a|#customer.A#||b|c"))),
            Lines{"customer.A path 2:45 Attributes"});
  EXPECT_EQ(FieldUses(Control("DTCProductList",
                              "\n" + Param("header-caption", "F&uuml;r #customer.First Name#"))),
            Lines{"customer.First Name path 2:56 Headline"});
  EXPECT_EQ(FieldUses(Control("DTCPositionList", "\n" + Param("order-id", "#order.orderid#"))),
            Lines{"order.orderid path 2:38 OrderId"});
  // Character references in the place of the marks.
  EXPECT_EQ(FieldUses(Control("DTCPrint", "\n" + Param("value", "&#35;order.Tot&#97;l&#35;"))),
            Lines{"order.Total path 2:39 Value"});
}

TEST(UsesTest, FindsWhatContentsHold) {
  EXPECT_EQ(FieldUses(Control("DTCIf", "\n" + Param("on-true",
                                                    "kv:@lt;b kv:@gt;#customer.A#kv:@br;"
                                                    "kv:@lt;kv:contact field=kv:@quot;Bkv:@quot;/"
                                                    "kv:@gt;"))),
            (Lines{"customer.A path 2:56 OnTrue", "customer.B tag 2:98 OnTrue"}));
  // Plain markup in a content is read the same way.
  EXPECT_EQ(FieldUses(Control("DTCClicktracker",
                              "\n" + Param("html-content", "&lt;kv:order field='T'&gt;"))),
            Lines{"order.T tag 2:55 HTMLContent"});
  // A script's text is encoded when read, without CDATA markers.
  EXPECT_EQ(FieldUses(Control("DTCScript",
                              "\n" + Param("html-content", "#cust]]>omer.<![CDATA[Ci]]>ty#"))),
            Lines{"customer.City path 2:57 HTMLContent"});
  // A name cannot hold what looks like a token elsewhere.
  EXPECT_EQ(FieldUses(Control("DTCPrint", Param("value", "#customer.kv:@lt;#"))), Lines{});
}

TEST(UsesTest, FindsFieldsInThePagesOwnText) {
  EXPECT_EQ(FieldUses("<p>#customer.A#</p>\r\n<kv:contact field=\"B\"/><kv:order FIELD=C>"),
            (Lines{"customer.A path 1:14", "customer.B tag 2:20", "order.C tag 2:40"}));
  EXPECT_EQ(FieldUses("<a href=\"x?y=#customer.A#\">\r<!-- #order.B# --><script>c='#order.C#'"),
            (Lines{"customer.A path 1:24", "order.B path 2:13", "order.C path 2:37"}));
  EXPECT_EQ(FieldUses("a{color:#customer.x;}\nb{color:#order}#system.date#"), Lines{});
  // The last hash of one may be the first of the next.
  EXPECT_EQ(FieldUses("#a#customer.B#customer.C#"), Lines{"customer.B path 1:13"});
  EXPECT_EQ(FieldUses("\xEF\xBB\xBF\xC3\xA4#customer.A#"), Lines{"customer.A path 1:12"});
}

TEST(UsesTest, FindsNoNameAcrossAControl) {
  EXPECT_EQ(FieldUses("#order.A" + Control("DTCPrint", "") + "B#<kv:order field='A" +
                      Control("DTCPrint", "") + "B'>#order.C#")
                .size(),
            1U);
}

TEST(UsesTest, LeavesOutSavedRuntimeTexts) {
  EXPECT_EQ(
      FieldUses("<!--KVO CONTROL STARTSPAN 1 " + Control("DTCPrint", Param("value", "#order.A#")) +
                "--><kv:print value=\"#order.A#\"/><!--KVO CONTROL ENDSPAN 1-->#order.B#")
          .size(),
      2U);
}

TEST(UsesTest, ReadsTheEncodingOfThePage) {
  EXPECT_EQ(FieldUses("<meta charset=windows-1252>\n#customer.Stra\xDF"
                      "e#" +
                      Control("DTCContact", Param("field",
                                                  "Gr\xF6\xDF"
                                                  "e"))),
            (Lines{"customer.Straße path 2:11", "customer.Größe value 2:109 Field"}));
  EXPECT_EQ(FieldUses(std::string("\xFF\xFE#\0", 4)), Lines{});
}

TEST(UsesTest, FindsUsesInBrokenControls) {
  EXPECT_EQ(FieldUses(Control("DTCIff", Param("test", "#customer.A#")) +
                      Control("DTCPrint", Param("walue", "#customer.B#") + "<param name=value>" +
                                              "x#customer.C#")),
            (Lines{"customer.A path 1:97 test", "customer.B path 1:209 walue"}));
}

TEST(UsesTest, FindsIdsAndClasses) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  const page::Page page("\n<object id=Eins classid='progid:kvopdesignobjects.dtcprint'></object>");
  const std::vector<Use> uses = FindUses(page).uses;
  ASSERT_EQ(uses.size(), 2U);
  EXPECT_EQ(uses[0].name, (Name{Kind::controlId, "Eins"}));
  EXPECT_EQ(uses[0].place, (page::Place{2, 12}));
  EXPECT_EQ(uses[1].name, (Name{Kind::controlClass, "DTCPrint"}));
  EXPECT_EQ(page.Bytes().substr(uses[1].begin, uses[1].end - uses[1].begin),
            "progid:kvopdesignobjects.dtcprint");
}

TEST(UsesTest, ShowsWhatIsAroundAUse) {
  const auto excerpt = [](const std::string& text) {
    const page::Page page(text);
    const PageUses found = FindUses(page);
    for (const Use& use : found.uses)
      if (IsField(use.name)) return Excerpt(page, found.controls, use);
    return std::string("none");
  };
  EXPECT_EQ(excerpt("a\n\t<p>#customer.A#\r\nb"), "<p>#customer.A#");
  EXPECT_EQ(excerpt("#customer.A#"), "#customer.A#");
  const std::string many(30, 'x');
  EXPECT_EQ(excerpt("\xC3\xA4" + many.substr(1) + "#customer.A#" + many + many),
            "..." + many.substr(1) + "#customer.A#" + many + many.substr(21) + "...");
  EXPECT_EQ(excerpt("<meta charset=windows-1252>\n\xE4\x81#customer.A#\xDF"),
            "ä\uFFFD#customer.A#ß");
  EXPECT_EQ(excerpt(std::string(500, 'x') + "#customer.A#"), "..." + many + "#customer.A#");
  EXPECT_EQ(excerpt(Control("DTCIf", Param("test", "#customer.A#&gt;&#10;1"))), "#customer.A#> 1");
  EXPECT_EQ(excerpt(Control("DTCIf", Param("on-true", "kv:@lt;bkv:@gt;#customer.A#"))),
            "<b>#customer.A#");
  EXPECT_EQ(excerpt(Control("DTCContact", Param("field", "Gr&ouml;&szlig;e"))), "Größe");
}

TEST(UsesTest, TellsWhatAWordMeans) {
  const auto kinds = [](std::string_view word) {
    std::vector<Kind> all;
    for (const Name& name : NamesMeant(word)) all.push_back(name.kind);
    return all;
  };
  EXPECT_EQ(kinds("customer.A"), (std::vector{Kind::contactField, Kind::controlId}));
  EXPECT_EQ(kinds("order.A"), (std::vector{Kind::orderField, Kind::controlId}));
  EXPECT_EQ(kinds("DTCIf"), (std::vector{Kind::controlClass, Kind::controlId}));
  EXPECT_EQ(kinds("customer."), (std::vector{Kind::controlId}));
  EXPECT_EQ(NamesMeant("order.A b").front(), (Name{Kind::orderField, "A b"}));
}

}  // namespace
}  // namespace kvo::uses
