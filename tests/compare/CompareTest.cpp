#include "document/compare/Compare.h"

#include <random>

#include "tests/compare/Controls.h"

namespace kvo::compare {
namespace {

using page::List;
using page::Param;
using page::Span;

class CompareTest : public page::PageTest {
 protected:
  static List Compared(const std::string& before, const std::string& after) {
    List lines;
    for (const Difference& difference : Compare(Version(before), Version(after)))
      for (const Message& line : Describe(difference)) lines.push_back(line.english);
    return lines;
  }
};

TEST_F(CompareTest, EqualPagesDoNotDiffer) {
  EXPECT_EQ(Compared("<p>" + Print("A", "x"), "<p>" + Print("A", "x")), List());
  EXPECT_EQ(Compared("", ""), List());
}

TEST_F(CompareTest, TellsAChangedPropertyByIdAndName) {
  EXPECT_EQ(Compared(Print("Preis", "x", "#,##0"), Print("Preis", "x", "#,##0.00")),
            List{"Preis: Format #,##0 -> #,##0.00"});
  const auto differences =
      Compare(Version(Print("Preis", "x", "#,##0")), Version("\n" + Print("Preis", "x", "0")));
  ASSERT_EQ(differences.size(), 2U);
  EXPECT_EQ(Describe(differences[0])[0].german, "Text: Zeile 1 neu");
  EXPECT_EQ(Describe(differences[1])[0].german, "Preis: Format #,##0 -> 0");
  EXPECT_EQ(differences[1].oldPlace->line, 1U);
  EXPECT_EQ(differences[1].newPlace->line, 2U);
}

TEST_F(CompareTest, ADefaultIsTheSameWrittenOrNot) {
  const std::string with = page::Element(Param("namespace", "kv") + Param("value", "x"));
  const std::string without = page::PrintElement("x");
  EXPECT_EQ(Compared(with, without), List{"DTCPrint in line 1: written differently, same content"});
}

TEST_F(CompareTest, TellsNewRemovedAndMovedControlsById) {
  const std::string a = Print("A", "a");
  const std::string b = Print("B", "b");
  EXPECT_EQ(Compared("<p>1</p>\n<p>2</p>\n", "<p>1</p>\n<p>2" + a + "</p>\n"),
            List{"A: added, DTCPrint in line 2"});
  EXPECT_EQ(Compared("<p>1" + a + "</p>\n", "<p>1</p>\n"), List{"A: removed, DTCPrint in line 1"});
  EXPECT_EQ(Compared("<p>" + a + "</p>\n<b>2</b>\n<i>" + b + "</i>\n",
                     "<p></p>\n<b>2" + a + "</b>\n<i>" + b + "</i>\n"),
            List{"A: moved from line 1 to line 2"});
}

TEST_F(CompareTest, PairsControlsWithoutIdByContentThenByPlace) {
  const std::string before = "<p>" + Print("", "a") + "</p>\n<p>" + Print("", "b") + "</p>\n";
  // The first is gone, the second stays.
  EXPECT_EQ(Compared(before, "<p>" + Print("", "b") + "</p>\n"),
            (List{"text: line 1 removed", "DTCPrint in line 1: removed"}));
  EXPECT_EQ(Compared(before, "<p>" + Print("", "a") + "</p>\n<p>" + Print("", "c") + "</p>\n"),
            List{"DTCPrint in line 2: Value b -> c"});
}

TEST_F(CompareTest, AnotherClassIsAnotherControl) {
  EXPECT_EQ(
      Compared("<p>" + Print("A", "a"),
               "<p><object classid=\"progid:KVOPDesignObjects.DTCScript\" id=\"A\"></object>"),
      (List{"A: removed, DTCPrint in line 1", "A: added, DTCScript in line 1"}));
}

TEST_F(CompareTest, TellsSavingAndTextsEditedByHand) {
  const std::string element = Print("A", "x");
  EXPECT_EQ(Compared(element, Span(element, "<kv:print value=\"x\"/>")), List{"A: saved"});
  EXPECT_EQ(Compared(Span(element, "<kv:print value=\"x\"/>"), Span(element, "mine")),
            List{"A: runtime text \"\" -> mine"});
}

TEST_F(CompareTest, TellsIdsAndAttributes) {
  const std::string before =
      "<object classid=\"progid:KVOPDesignObjects.DTCPrint\" width=1></object>";
  const std::string after = "<object classid=\"progid:KVOPDesignObjects.DTCPrint\" id=A></object>";
  EXPECT_EQ(Compared("<p>" + before + "</p>", "<p>" + after + "</p>"),
            (List{"A: id \"\" -> A", "A: width 1 -> \"\""}));
}

TEST_F(CompareTest, TellsChangedTextByLine) {
  EXPECT_EQ(Compared("1\n2\n3\n4\n", "1\nx\ny\n3\n4\n"),
            List{"text: lines 2-3 changed, formerly line 2"});
  EXPECT_EQ(Compared("1\n2\n3\n", "1\n3\n"), List{"text: line 2 removed"});
  EXPECT_EQ(Compared("1\n2", "1\n2\n3\n"), List{"text: lines 2-3 changed, formerly line 2"});
  // Once for a line with a control in it.
  const std::string control = Print("A", "x");
  EXPECT_EQ(Compared("a" + control + "b\n", "c" + control + "d\n"), List{"text: line 1 changed"});
}

TEST_F(CompareTest, AControlAtTheEndStaysInPlace) {
  const std::string control = Print("A", "x");
  EXPECT_EQ(Compared(control, control + "b"), List{"text: line 1 added"});
  EXPECT_EQ(Compared("a\n" + control + "b", "a\n" + control), List{"text: line 2 removed"});
  EXPECT_EQ(Compared(control + Print("B", "y"), Print("B", "y") + control).size(), 1U);
}

// Every difference of bytes is told, whatever is changed.
TEST_F(CompareTest, IsEmptyForEqualBytesOnly) {
  std::mt19937 random(2);
  const List parts = {"<p>",
                      "</p>\n",
                      "a",
                      "b\n",
                      Print("A", "x"),
                      Print("", "y"),
                      Print("B", ""),
                      "\n",
                      Span(Print("A", "x"), "mine")};
  for (int round = 0; round < 3000; ++round) {
    const auto make = [&] {
      std::string page;
      for (std::size_t count = random() % 7; count > 0; --count)
        page += parts[random() % parts.size()];
      return page;
    };
    const std::string a = make();
    const std::string b = make();
    ASSERT_EQ(Compared(a, b).empty(), a == b) << a << "\n---\n" << b;
    ASSERT_EQ(Compared(a, a), List());
  }
}

TEST_F(CompareTest, ShortensLongValuesToWhereTheyDiffer) {
  const std::string front(200, 'a');
  const List lines = Compared(Print("A", front + "b\xC3\xA4"), Print("A", front + "c&#13;&#10;"));
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_LT(lines[0].size(), 180U) << lines[0];
  EXPECT_NE(lines[0].find("ab\xC3\xA4 -> \xE2\x80\xA6"), std::string::npos) << lines[0];
  EXPECT_TRUE(lines[0].ends_with("ac\\r\\n")) << lines[0];
}

TEST_F(CompareTest, BrokenControlsAndUtf16AreText) {
  EXPECT_EQ(Compared("<object classid=\"progid:KVOPDesignObjects.DTCPrint\">",
                     "<object classid=\"progid:KVOPDesignObjects.DTCPrint\" >"),
            List{"text: line 1 changed"});
  EXPECT_EQ(Compared("\xFF\xFE<", "\xFF\xFE>"), List{"text: line 1 changed"});
}

TEST_F(CompareTest, ReadableTextHasOneLineForEachProperty) {
  const std::string control = Print("Preis", "#order.total#", "#,##0");
  EXPECT_EQ(Readable(Version("<meta charset=\"iso-8859-1\">\n<p>Preis\xE4: " +
                             Span(control, "<kv:print value=\"#order.total#\" format=\"#,##0\"/>") +
                             "</p>\n" + Print("", "a&#10;b"))),
            "<meta charset=\"iso-8859-1\">\n"
            "<p>Preis\xC3\xA4: {DTCPrint Preis}</p>\n"
            "    Preis: Value = #order.total#\n"
            "    Preis: Format = #,##0\n"
            "{DTCPrint, not saved}\n"
            "    DTCPrint: Value = a\\n\n"
            "        b\n"
            "    DTCPrint: Format = \n");
  const std::string broken = "<object classid=\"progid:KVOPDesignObjects.DTCPrint\">\xFF";
  EXPECT_EQ(Readable(Version(broken)), broken);
}

}  // namespace
}  // namespace kvo::compare
