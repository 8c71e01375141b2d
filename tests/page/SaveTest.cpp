// Saving and publishing a page.
#include <random>

#include "PageTesting.h"
#include "common/values/RuntimeError.h"
#include "host/registration/classes.h"

namespace kvo::page {
namespace {

using Saving = PageTest;
using Publishing = PageTest;

TEST_F(Saving, TurnsAnElementIntoASpan) {
  EXPECT_EQ(Saved("<p>" + PrintElement("#order.total#") + "</p>\r\n"),
            "<p><!--KVO CONTROL STARTSPAN 1 <object classid=\"progid:KVOPDesignObjects.DTCPrint\">"
            "<param name=\"value\" value=\"#order.total#\"><param name=\"format\" value=\"\">"
            "</object>--><kv:print value=\"#order.total#\"/><!--KVO CONTROL ENDSPAN 1--></p>\r\n");
}

TEST_F(Saving, LoadsControlsFromAnEmptyBag) {
  EXPECT_EQ(Saved(Element("", "DTCScript")),
            Span(Element(Param("html-content", ""), "DTCScript"), "<kv:script></kv:script>"));
  EXPECT_EQ(problems.size(), 0U);
}

TEST_F(Saving, StoresTheKeysInTheOrderOfTheClass) {
  EXPECT_EQ(Saved(Element(Param("format", "0") + Param("value", "v") + Param("namespace", "x"))),
            Span(Element(Param("namespace", "x") + Param("value", "v") + Param("format", "0")),
                 "<x:print value=\"v\" format=\"0\"/>"));
}

TEST_F(Saving, KeepsIdAndAttributesInOrder) {
  EXPECT_EQ(Saved("<object id=Preis width=1 classid=progid:KVOPDesignObjects.DTCPrint declare "
                  "style='a: \"b\"' data--x=1 y--></object>"),
            Span("<object classid=\"progid:KVOPDesignObjects.DTCPrint\" id=\"Preis\" width=\"1\" "
                 "declare style=\"a: &quot;b&quot;\" data--x=\"1\" y--=\"\"><param name=\"value\" "
                 "value=\"\"><param name=\"format\" value=\"\"></object>",
                 ""));
}

// Sizes around the buffer's limits, and pieces too large for the buffer.
TEST_F(Saving, WritesPiecesOfAnySizeInOrder) {
  constexpr std::size_t kSizes[] = {0,      100,    32'700, 32'768, 33'000,
                                    65'400, 65'536, 66'000, 140'000};
  for (const std::size_t valueSize : kSizes) {
    for (const std::size_t gapSize : kSizes) {
      const std::string value(valueSize, 'v');
      const std::string gap(gapSize, 'g');
      const std::string text = value.empty() ? "" : "<kv:print value=\"" + value + "\"/>";
      const std::string saved = Span(StoredPrint(value), text);
      EXPECT_TRUE(Saved("a" + PrintElement(value) + gap + PrintElement(value) + "b") ==
                  "a" + saved + gap + saved + "b")
          << valueSize << " " << gapSize;
    }
  }
}

TEST_F(Saving, TwiceGivesTheSameBytes) {
  const std::string once = Saved("<b>" + PrintElement("a &amp; b -- &gt;") + "</b>" +
                                 Element(Param("value", "td"), "DTCElement"));
  EXPECT_EQ(Saved(once), once);
  EXPECT_EQ(problems.size(), 0U);
}

TEST_F(Saving, KeepsAPageWithoutControls) {
  const std::string page = "\xEF\xBB\xBF<html>\r\n<p>\xFF\xFE <object data=x></object>\0\n\r";
  EXPECT_EQ(Saved(page), page);
  EXPECT_EQ(Published(page), page);
}

TEST_F(Saving, EscapesCharactersThatWouldEndTheComment) {
  const std::string saved =
      Saved(PrintElement("a--b --&gt; --!&gt; - &#13;&#10;&#9;&quot;&lt;&amp;amp;"));
  EXPECT_NE(saved.find("value=\"a&#45;&#45;b &#45;&#45;&gt; &#45;&#45;!&gt; - "
                       "&#13;&#10;&#9;&quot;&lt;&amp;amp;\""),
            std::string::npos)
      << saved;
  EXPECT_EQ(ValuesIn(saved), List{"a--b --> --!> - \r\n\t\"<&amp;"});
}

// CDATA sections do not depend on what the controls contain, or on how that is written.
TEST_F(Saving, KeepsControlsAfterWhatLooksLikeACDataSection) {
  const std::string start = "<![CDATA[ a>";
  const std::string print = StoredPrint("a");
  const std::string saved = Saved(start + PrintElement("a") + PrintElement("b ]]>") + "x");
  EXPECT_EQ(saved, start + Span(print, "<kv:print value=\"a\"/>") +
                       Span(StoredPrint("b ]]&gt;"), "<kv:print value=\"b ]]>\"/>") + "x");
  EXPECT_EQ(Saved(saved), saved);
  EXPECT_EQ(ValuesIn(saved), (List{"a", "b ]]>"}));
  // Nor can one control's value reveal another control.
  EXPECT_EQ(ValuesIn("<svg>" + start + PrintElement("a ]]>") + PrintElement("b")), (List{"b"}));
  EXPECT_EQ(Saved("<svg>" + start + PrintElement("a ]]>") + PrintElement("b")), "(not saved)");
}

TEST_F(Saving, KeepsLineBreaksOfAValue) {
  EXPECT_EQ(ValuesIn(Saved(PrintElement("a\r\nb\nc\rd"))), List{"a\r\nb\nc\rd"});
}

TEST_F(Saving, NumbersASpanWithTheFirstEndCommentNotInItsText) {
  const auto saved = [&](const std::string& value) {
    std::string escaped;
    for (const char c : value) escaped += c == '<' ? "&lt;" : c == '>' ? "&gt;" : std::string(1, c);
    const std::string page = Saved(PrintElement(escaped));
    EXPECT_EQ(Saved(page), page);
    EXPECT_EQ(ValuesIn(page), List{value});
    return page.substr(0, 27);
  };
  const std::string end = "<!--KVO CONTROL ENDSPAN ";
  EXPECT_EQ(saved(end + "1-->"), "<!--KVO CONTROL STARTSPAN 2");
  EXPECT_EQ(saved(end + "2-->"), "<!--KVO CONTROL STARTSPAN 1");
  EXPECT_EQ(saved(end + "1-->" + end + "3-->" + end + "2-->"), "<!--KVO CONTROL STARTSPAN 4");
  EXPECT_EQ(saved(end + "1" + end + "1 -->" + end + "01-->"), "<!--KVO CONTROL STARTSPAN 1");
  EXPECT_EQ(saved(end + "99999999999999999999999-->"), "<!--KVO CONTROL STARTSPAN 1");
}

TEST_F(Saving, RefusesATextEditedByHand) {
  const std::string page = "\n " + Span(StoredPrint("x"), "<kv:print value=\"y\"/>");
  EXPECT_EQ(Saved(page), "(not saved)");
  EXPECT_EQ(Listed(problems), List{"2:2 edited-by-hand"});
}

TEST_F(Saving, OverwritesATextEditedByHandWhenForced) {
  const std::string page = Span(StoredPrint("x"), "<kv:print value=\"y\"/>");
  EXPECT_EQ(Saved(page, {.force = true}), Span(StoredPrint("x"), "<kv:print value=\"x\"/>"));
}

TEST_F(Publishing, UsesTheControlsOwnTextAndWarnsAboutAnEdit) {
  EXPECT_EQ(Published("a" + Span(StoredPrint("x"), "<kv:print value=\"y\"/>") + "b"),
            "a<kv:print value=\"x\"/>b");
  EXPECT_EQ(Listed(problems), List{"1:2 edited-by-hand?"});
}

TEST_F(Publishing, ReplacesEachControlByItsText) {
  const std::string page =
      "<td>" + PrintElement("a") + "</td>" + PrintElement("") + "<br>" + PrintElement("a&amp;b");
  const std::string published = "<td><kv:print value=\"a\"/></td><br><kv:print value=\"a&amp;b\"/>";
  EXPECT_EQ(Published(page), published);
  EXPECT_EQ(Published(Saved(page)), published);
}

// Returns each control's part of the published page, with the part of the page that it replaces; a
// control that failed in brackets.
List PartsOf(const std::string& page, const PublishedPage& published) {
  List parts;
  for (const PublishedControl& each : published.controls) {
    const std::string part = page.substr(each.sourceBegin, 7) + "=>" +
                             published.bytes.substr(each.begin, each.end - each.begin);
    parts.push_back(each.failed ? "[" + part + "]" : part);
  }
  return parts;
}

TEST_F(Publishing, TellsWhereEachControlWent) {
  const std::string page = "<p>" + PrintElement("a") + "&auml;" +
                           Span(StoredPrint("b"), "<kv:print value=\"b\"/>") + "</p>";
  const PublishedPage published = PublishWithPlaces(Page(page));
  EXPECT_EQ(published.bytes, Published(page));
  EXPECT_EQ(PartsOf(page, published),
            (List{"<object=><kv:print value=\"a\"/>", "<!--KVO=><kv:print value=\"b\"/>"}));
}

TEST_F(Publishing, LeavesOutOnlyWhatFailsWhenPlacesAreWanted) {
  const std::string page = PrintElement("a") + "<b>" + Element(Param("colour", "x")) + "</b>" +
                           Span(StoredPrint("b"), "x" + PrintElement("lost")) + "<i>" +
                           PrintElement("c") + "</i>";
  const PublishedPage published = PublishWithPlaces(Page(page));
  EXPECT_EQ(published.bytes, "<kv:print value=\"a\"/><b></b><i><kv:print value=\"c\"/></i>");
  EXPECT_EQ(PartsOf(page, published), (List{"<object=><kv:print value=\"a\"/>", "[<object=>]",
                                            "[<!--KVO=>]", "<object=><kv:print value=\"c\"/>"}));
  EXPECT_EQ(Listed(published.problems), Listed((Published(page), problems)));
}

TEST_F(Publishing, MatchesTheNewCommand) {
  const std::string element = ElementText(*Inspect(Page(PrintElement(""))).controls[0].contract,
                                          std::nullopt, {{"value", "a&b"}, {"format", "#,##0.00"}});
  EXPECT_EQ(element,
            "<object classid=\"progid:KVOPDesignObjects.DTCPrint\"><param name=\"value\" "
            "value=\"a&amp;b\"><param name=\"format\" value=\"#,##0.00\"></object>");
  EXPECT_EQ(Published(element), "<kv:print value=\"a&amp;b\" format=\"#,##0.00\"/>");
}

// Other controls in the text of a saved one.

class Nested : public PageTest {
 protected:
  // The page is neither written nor damaged, and the message names the other control.
  void ExpectRefused(const std::string& page, const List& expected, std::string_view other) {
    for (const bool force : {false, true}) {
      EXPECT_EQ(Saved(page, {.force = force}), "(not saved)") << page;
      EXPECT_EQ(Listed(problems), expected) << page;
    }
    EXPECT_EQ(Published(page), "(not published)") << page;
    EXPECT_EQ(Checked(page), expected) << page;
    ASSERT_FALSE(problems.empty());
    EXPECT_NE(problems[0].message.english.find(other), std::string::npos)
        << problems[0].message.english;
    EXPECT_EQ(problems[0].control, "DTCPrint");
  }
};

TEST_F(Nested, UnsavedControlIsNotDropped) {
  const std::string tag = "<kv:print value=\"x\"/>";
  const std::string other = "<object classid=progid:KVOPDesignObjects.DTCContact id=Mail></object>";
  for (const std::string& text :
       List{tag + "\n" + other, other, "\n" + other + tag, tag + "<!--\n" + other + "-->",
            "<title>\n" + other, tag + "\n" + other + other})
    ExpectRefused(
        Span(StoredPrint("x"), text), List{"1:1 nested-control"},
        text == other ? "(DTCContact \"Mail\", line 1)" : "(DTCContact \"Mail\", line 2)");
}

TEST_F(Nested, UnsavedControlOfAnUnknownClassIsNotDropped) {
  ExpectRefused(Span(StoredPrint("x"), Element("", "Nope")), List{"1:1 nested-control"},
                "(Nope, line 1)");
}

// A text that itself contains the words of a start comment.
TEST_F(Nested, SpanAfterALostEndIsNotDroppedWhateverItsText) {
  const std::string words = "&lt;!--KVO CONTROL STARTSPAN 1 &lt;object";
  const std::string once = Saved(PrintElement(words) + "\n" + PrintElement("b"));
  ASSERT_NE(once, "(not saved)");
  const std::string end = "<!--KVO CONTROL ENDSPAN 1-->";
  std::string page = once;
  page.erase(page.find(end), end.size());
  ExpectRefused(page, List{"1:1 missing-end"}, "(DTCPrint, line 2)");

  // The same with one of our elements in the words.
  const std::string element =
      "&lt;!--KVO CONTROL STARTSPAN 1 &lt;object "
      "classid='progid:KVOPDesignObjects.DTCPrint'&gt;&lt;/object&gt;";
  page = Saved(PrintElement(element) + "\n" + PrintElement("b"));
  page.erase(page.find(end), end.size());
  ExpectRefused(page, List{"1:1 missing-end"}, "(DTCPrint, line 2)");
}

TEST_F(Nested, DamagedStartCommentAfterALostEndIsNotDropped) {
  const std::string end = "<!--KVO CONTROL ENDSPAN 1-->";
  const std::string page = "<!--KVO CONTROL STARTSPAN 1 " + StoredPrint("x") + "-->x\n" +
                           "<!--KVO CONTROL STARTSPAN 1 <object classid=damaged></object>-->" + end;
  EXPECT_EQ(Saved(page, {.force = true}), "(not saved)");
  EXPECT_EQ(Published(page), "(not published)");
}

// What the control writes itself is not another control, whatever else was edited.
TEST_F(Nested, ElementInTheControlsOwnTextMayBeReplaced) {
  const std::string script =
      Element(Param("html-content",
                    "kv:@lt;object classid='progid:KVOPDesignObjects.DTCPrint'"
                    "kv:@gt;kv:@lt;/objectkv:@gt;"),
              "DTCScript");
  const std::string saved = Saved(script);
  std::string edited = saved;
  edited.insert(edited.find("<kv:script>"), "edited");
  EXPECT_EQ(Saved(edited), "(not saved)");
  EXPECT_EQ(Listed(problems), List{"1:1 edited-by-hand"});
  EXPECT_EQ(Saved(edited, {.force = true}), saved);
  // A second one may not.
  const std::string own = "<object classid='progid:KVOPDesignObjects.DTCPrint'></object>";
  edited.insert(edited.find("<kv:script>"), own);
  EXPECT_EQ(Saved(edited, {.force = true}), "(not saved)");
  EXPECT_EQ(Listed(problems), List{"1:1 nested-control"});
}

TEST_F(Nested, ForeignControlsMayBeReplaced) {
  EXPECT_EQ(Saved(Span(StoredPrint("x"), "<object data=x></object>"), {.force = true}),
            Span(StoredPrint("x"), "<kv:print value=\"x\"/>"));
}

// New identifiers.

std::string CachedList() {
  return Element(Param("basename", "products") + Param("in-cache", "yes"), "DTCProductList");
}

TEST_F(Saving, KeepsASpanThatDiffersOnlyInANewGuid) {
  const std::string once = Saved(CachedList());
  ASSERT_NE(once.find("in-cache=\"{"), std::string::npos) << once;
  EXPECT_EQ(Saved(once), once);
  EXPECT_EQ(problems.size(), 0U);
  EXPECT_EQ(Published(once), Published(once));
}

TEST_F(Saving, DetectsAnEditNextToANewGuid) {
  std::string once = Saved(CachedList());
  const std::size_t at = once.find("products display");
  ASSERT_NE(at, std::string::npos);
  once[at] = 'P';
  Saved(once);
  EXPECT_EQ(Listed(problems), List{"1:1 edited-by-hand"});
}

TEST_F(Saving, DetectsADamagedGuid) {
  std::string once = Saved(CachedList());
  const std::size_t at = once.rfind("in-cache=\"{");
  ASSERT_NE(at, std::string::npos);
  once[at + 11] = 'x';
  Saved(once);
  EXPECT_EQ(Listed(problems), List{"1:1 edited-by-hand"});
}

TEST_F(Saving, ComparesAGuidThatIsPartOfAValue) {
  const std::string guid = "{01234567-89AB-CDEF-0123-456789ABCDEF}";
  const std::string other = "{11234567-89AB-CDEF-0123-456789ABCDEF}";
  Saved(Span(StoredPrint(guid), "<kv:print value=\"" + other + "\"/>"));
  EXPECT_EQ(Listed(problems), List{"1:1 edited-by-hand"});
}

// A stored form that reads differently the next time.

TEST_F(Saving, KeepsABagThatWouldNotSurviveStoring) {
  // An empty border is not stored and would come back as "0".
  const std::string list =
      Element(Param("display-desc2", "yes") + Param("table-border", ""), "DTCProductList");
  const std::string saved = Saved(list);
  EXPECT_EQ(Listed(problems), List{"1:1 unstable-bag?"});
  EXPECT_EQ(saved.find(" table-border="), std::string::npos) << "in the runtime text";
  EXPECT_NE(saved.find("\"table-border\""), std::string::npos) << "in the bag";
  EXPECT_EQ(Saved(saved), saved);
}

TEST_F(Saving, WritesTheTextOfAnEditedBag) {
  const std::string list = Saved(Element("", "DTCProductList"));
  const Edit edit{0, [](Control& control) { control.Let("Border", ""); }};
  const std::string edited = Saved(list, {.edit = &edit});
  EXPECT_EQ(Listed(problems), List{"1:1 unstable-bag?"});
  EXPECT_EQ(edited, list);
  EXPECT_EQ(Saved(edited), edited);
}

// Edits.

TEST_F(Saving, ChangesOneControlThroughItsSetters) {
  const std::string page = PrintElement("a") + "-" + PrintElement("b");
  const Edit edit{1, [](Control& control) { control.Let("Value", "new"); }};
  EXPECT_EQ(Saved(page, {.edit = &edit}),
            Span(StoredPrint("a"), "<kv:print value=\"a\"/>") + "-" +
                Span(StoredPrint("new"), "<kv:print value=\"new\"/>"));
  EXPECT_EQ(Saved(page, {.edit = &edit, .editedOnly = true}),
            PrintElement("a") + "-" + Span(StoredPrint("new"), "<kv:print value=\"new\"/>"));
}

TEST_F(Saving, RefusesToEditAControlWhoseTextWasEditedByHand) {
  const std::string page = Span(StoredPrint("x"), "y");
  const Edit edit{0, [](Control& control) { control.Let("Value", "new"); }};
  EXPECT_EQ(Saved(page, {.edit = &edit}), "(not saved)");
  EXPECT_EQ(Saved(page, {.force = true, .edit = &edit}),
            Span(StoredPrint("new"), "<kv:print value=\"new\"/>"));
}

TEST_F(Saving, PassesAFailingEditToTheCaller) {
  const Edit edit{0, [](Control& control) { control.Let("Nope", "new"); }};
  NullSink sink;
  EXPECT_THROW(Save(Page(PrintElement("x")), sink, {.edit = &edit}), RuntimeError);
}

// Random pages.

class RandomPages {
 public:
  explicit RandomPages(unsigned seed) : random_(seed) {}

  std::string Make() {
    std::string page = "\xEF\xBB\xBF";  // UTF-8, whatever else it contains
    for (int part = Number(8); part-- > 0;) page += Number(2) == 0 ? Markup() : Control();
    return page;
  }
  std::string Bytes() {
    std::string bytes;
    for (int left = Number(200); left-- > 0;) bytes += static_cast<char>(Number(256));
    return bytes;
  }

 private:
  int Number(int below) { return static_cast<int>(random_() % static_cast<unsigned>(below)); }
  std::string OneOf(std::span<const std::string_view> texts) {
    return std::string(texts[static_cast<std::size_t>(Number(static_cast<int>(texts.size())))]);
  }

  std::string Markup() {
    static constexpr std::string_view parts[] = {"<p>",
                                                 "</p>",
                                                 "\r\n",
                                                 "\xC3\xA4\xE2\x82\xAC",
                                                 "<!-- c -->",
                                                 "<td width='1>2'>",
                                                 "<",
                                                 "&nbsp",
                                                 "<img src=a/>",
                                                 "\xFF\x80",
                                                 "<script>a<b</script>"};
    std::string markup;
    for (int left = Number(5); left-- > 0;) markup += OneOf(parts);
    return markup;
  }

  std::string Value() {
    static constexpr std::string_view parts[] = {"--",
                                                 "-->",
                                                 "-",
                                                 "\"",
                                                 "'",
                                                 "\r\n",
                                                 "\n",
                                                 "\r",
                                                 "\t",
                                                 "<",
                                                 ">",
                                                 "&",
                                                 "&amp;",
                                                 "&#45;",
                                                 "&copy=",
                                                 "--!>",
                                                 "\xC3\xBC",
                                                 "\xF0\x9F\x92\x8C",
                                                 "a b",
                                                 "",
                                                 "<!--KVO CONTROL ENDSPAN 1-->",
                                                 "<!--KVO CONTROL STARTSPAN 1 ",
                                                 "</object>",
                                                 std::string_view("\0", 1)};
    std::string value;
    for (int left = Number(6); left-- > 0;) value += OneOf(parts);
    return value;
  }

  std::string Control() {
    static constexpr std::string_view keys[] = {"namespace",        "basename",      "value",
                                                "display-basename", "display-value", "format"};
    std::vector<MemoryBag::Entry> bag;
    for (const std::string_view key : keys)
      if (Number(2) == 0) bag.emplace_back(key, Value());
    const std::string id = Value();
    return ElementText(FindControlByName("DTCPrint")->contract(), id, bag);
  }

  std::mt19937 random_;
};

TEST_F(Saving, OfRandomPagesSettlesAtOnceAndKeepsEveryValue) {
  RandomPages random(1);
  int controls = 0;
  for (int round = 0; round < 3000; ++round) {
    const std::string page = random.Make();
    const std::string once = Saved(page);
    ASSERT_EQ(problems.size(), 0U) << page << Describe(problems[0], "page", Language::english);
    ASSERT_EQ(Saved(once), once);
    ASSERT_EQ(Published(once), Published(page));

    const auto before = Inspect(Page(page)).controls;
    const auto after = Inspect(Page(once)).controls;
    ASSERT_EQ(before.size(), after.size()) << page;
    for (std::size_t i = 0; i < before.size(); ++i, ++controls) {
      ASSERT_EQ(before[i].id, after[i].id);
      ASSERT_EQ(StoredBag(*Load(*before[i].contract, before[i].bag)), after[i].bag);
    }
  }
  EXPECT_GT(controls, 3000);
}

TEST_F(Saving, OfRandomBytesGivesTheSameBytes) {
  RandomPages random(2);
  for (int round = 0; round < 3000; ++round) {
    const std::string bytes = "x" + random.Bytes();  // not a UTF-16 byte order mark
    ASSERT_EQ(Saved(bytes), bytes);
    ASSERT_EQ(Published(bytes), bytes);
  }
}

}  // namespace
}  // namespace kvo::page
