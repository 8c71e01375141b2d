// Converts a page to text for the editor, and back to bytes.
#include "apps/editor/PageText.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include "apps/editor/ControlSource.h"
#include "tests/editor/EditorTest.h"

namespace kvo::editor {
namespace {

constexpr char kPrint[] =
    "<object classid=\"progid:KVOPDesignObjects.DTCPrint\" id=\"Preis\"><param name=\"value\" "
    "value=\"#order.total#\"></object>";

std::string Declared(const std::string& encoding, const std::string& rest) {
  return "<meta charset=\"" + encoding + "\">" + rest;
}

class PageTextTest : public testing::Test {
 private:
  Desk desk_;
};

TEST_F(PageTextTest, AnyBytesAreRestored) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  const std::string control = kPrint;
  const std::string pages[] = {
      "",
      "plain",
      "a\r\nb\nc\rd\r\n",
      "\n\r\n\r\r\n",
      "\r",
      "\xEF\xBB\xBF<p>mark</p>\r\n",
      "\xEF\xBB\xBF\xEF\xBB\xBF",
      "in \xEF\xBB\xBF the middle",
      all,
      all + all,
      Declared("windows-1252", all),
      Declared("iso-8859-1", all),
      Declared("iso-8859-15", all),
      Declared("shift_jis", all),
      std::string("a\0b\0\0c", 6),
      "\xEF\xBF\xBC object replacement, \xE2\x80\xA8 line, \xE2\x80\xA9 paragraph separator",
      "\xEF\xB7\x90\xEF\xB7\x91\xEF\xBF\xBE\xEF\xBF\xBF",
      "\xF0\x9F\x98\x80 beyond the first plane \xF0\x9F\xBF\xBE",
      "cut off \xF0\x9F",
      "\xED\xA0\x80 a surrogate",
      control,
      control + control,
      "\r\n" + control + "\r\n",
      "x\xFF" + control + "\xFF\r",
      Declared("windows-1252", "\xE4\x80" + control + "\xFC"),
      "<!-- " + control + " -->" + control,
      "<object classid=\"progid:KVOPDesignObjects.DTCNichts\"></object>" + control,
      "<object classid=\"progid:KVOPDesignObjects.DTCPrint\">",
  };
  for (const std::string& page : pages)
    EXPECT_EQ(PageText(page).Bytes(), page) << testing::PrintToString(page);
}

TEST_F(PageTextTest, EveryPageOfTheFuzzersIsRestored) {
  std::size_t pages = 0;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(
           std::filesystem::path(KVO_SOURCE_DIR) / "fuzz/corpus")) {
    if (!entry.is_regular_file()) continue;
    std::ifstream file(entry.path(), std::ios::binary);
    std::stringstream bytes;
    bytes << file.rdbuf();
    EXPECT_EQ(PageText(bytes.str()).Bytes(), bytes.str()) << entry.path();
    ++pages;
  }
  EXPECT_GT(pages, 20U);
}

TEST_F(PageTextTest, AControlIsOneCharacter) {
  const PageText text(std::string("<b>") + kPrint + "</b>");
  EXPECT_EQ(text.Text(), QString("<b>") + kEmbeddedCharacter + "</b>");
  ASSERT_EQ(text.EmbeddedParts().size(), 1U);
  EXPECT_EQ(text.EmbeddedParts()[0].kind, Embedded::Kind::control);
  EXPECT_EQ(text.EmbeddedParts()[0].bytes, kPrint);
  EXPECT_EQ(text.At(3), &text.EmbeddedParts()[0]);
  EXPECT_EQ(text.At(2), nullptr);
}

TEST_F(PageTextTest, InvalidControlsStayText) {
  const std::string broken =
      "<object classid=\"progid:KVOPDesignObjects.DTCElement\"><param name=\"opening-tag-only\" "
      "value=\"vielleicht\"></object>";
  for (const std::string& page :
       {"<!--" + std::string(kPrint) + "-->", "<script>" + std::string(kPrint) + "</script>",
        broken, std::string("<object classid=\"progid:Other.Thing\"></object>")}) {
    EXPECT_TRUE(PageText(page).EmbeddedParts().empty()) << page;
    EXPECT_EQ(PageText(page).Text().toStdString(), page);
  }
}

TEST_F(PageTextTest, OnlyUnusualLineBreaksAreRemembered) {
  const PageText text("a\r\nb\r\nc\nd");
  EXPECT_EQ(text.LineBreak(), "\r\n");
  EXPECT_EQ(text.Text(), QString::fromUtf8("a\u2029b\u2029c\u2029d"));
  ASSERT_EQ(text.EmbeddedParts().size(), 1U);
  EXPECT_EQ(text.EmbeddedParts()[0].kind, Embedded::Kind::lineBreak);
  EXPECT_EQ(text.EmbeddedParts()[0].position, 5);
}

TEST_F(PageTextTest, CharactersMissingInTheEncodingBecomeReferences) {
  PageText text(Declared("iso-8859-1", "x"));
  const int end = static_cast<int>(text.Text().size());
  text.Replace(end, 0, QString::fromUtf8("ä€😀"), {});
  EXPECT_EQ(text.Bytes(), Declared("iso-8859-1", "x\xE4&#8364;&#128512;"));
}

TEST_F(PageTextTest, PlacesMapCharactersToBytesAndBack) {
  std::string page = "\xEF\xBB\xBF<p>ä€😀\r\n";
  for (int line = 0; line < 1000; ++line) page += "Zeile ü " + std::to_string(line) + "\n";
  page += std::string("\xFF") + kPrint + "\r" + kPrint + "Ende";
  const PageText text(page);
  PageText::Places places;
  ASSERT_EQ(text.Bytes(places), page);
  std::size_t before = 0;
  for (int position = 0; position <= text.Text().size(); ++position) {
    if (position > 0 && text.Text()[position - 1].isHighSurrogate()) continue;
    const std::size_t offset = places.OffsetOf(position);
    ASSERT_TRUE(position == 0 || offset > before) << position;
    ASSERT_EQ(places.PositionOf(offset), position);
    before = offset;
  }
  EXPECT_EQ(places.OffsetOf(static_cast<int>(text.Text().size())), page.size());
  // Every byte of a control maps to its character.
  const int control = static_cast<int>(text.Text().indexOf(kEmbeddedCharacter, 5));
  const std::size_t begin = page.find("<object");
  EXPECT_EQ(places.PositionOf(begin + 10), text.EmbeddedParts()[2].position);
  EXPECT_EQ(text.EmbeddedParts()[1].position, control);
}

TEST_F(PageTextTest, AFragmentIsReadAsUtf8AndEncodedForItsPage) {
  const PageText target(Declared("windows-1252", ""));
  const std::string fragment =
      "ä<object classid=\"progid:KVOPDesignObjects.DTCPrint\" id=\"Über\"><param name=\"value\" "
      "value=\"€ Ω\"></object>\nx";
  const PageText text = PageText::OfFragment(fragment, target.Encoding());
  EXPECT_EQ(text.Text(), QString::fromUtf8("ä\uFFFC\u2029x"));
  ASSERT_EQ(text.EmbeddedParts().size(), 1U);
  const ControlSource control(text.EmbeddedParts()[0].bytes, target.Encoding());
  EXPECT_EQ(control.Id(), "Über");
  EXPECT_EQ(ToText(control.Load()->Get("Value")), "€ Ω");
  EXPECT_TRUE(
      text.EmbeddedParts()[0].bytes.contains("id=\"\xDC"
                                             "ber\""));
  EXPECT_EQ(text.Fragment().substr(0, 2), "ä");
}

// --- one control on its own ---

ControlSource SourceOf(const std::string& bytes) {
  return {QByteArray::fromStdString(bytes), page::PageEncoding()};
}

std::string Span(const std::string& text) {
  return std::string("<!--KVO CONTROL STARTSPAN 1 ") + kPrint + "-->" + text +
         "<!--KVO CONTROL ENDSPAN 1-->";
}

TEST_F(PageTextTest, AnEditedControlIsASavedSpan) {
  const ControlSource source = SourceOf(kPrint);
  const auto control = source.Load();
  control->Let("Value", "neu");
  const auto edited = source.Edited(*control, false);
  ASSERT_TRUE(edited);
  EXPECT_EQ(*edited,
            "<!--KVO CONTROL STARTSPAN 1 <object classid=\"progid:KVOPDesignObjects.DTCPrint\" "
            "id=\"Preis\"><param name=\"value\" value=\"neu\"><param name=\"format\" "
            "value=\"\"></object>--><kv:print value=\"neu\"/><!--KVO CONTROL ENDSPAN 1-->");
}

TEST_F(PageTextTest, HandEditedTextIsReplacedOnlyWithConsent) {
  const ControlSource source = SourceOf(Span("von Hand"));
  const auto control = source.Load();
  control->Let("Value", "neu");
  EXPECT_FALSE(source.Edited(*control, false));
  const auto edited = source.Edited(*control, true);
  ASSERT_TRUE(edited);
  EXPECT_TRUE(edited->contains("<kv:print value=\"neu\"/>"));
  EXPECT_FALSE(edited->contains("von Hand"));
}

TEST_F(PageTextTest, AValueThatThePageCannotEncodeStaysAnElement) {
  const std::string page = Declared("iso-8859-1", "");
  const ControlSource source(kPrint, PageText(page).Encoding());
  const auto control = source.Load();
  control->Let("Value", "€");
  const auto edited = source.Edited(*control, false);
  ASSERT_TRUE(edited);
  EXPECT_TRUE(edited->startsWith("<object"));
  EXPECT_EQ(ToText(ControlSource(*edited, PageText(page).Encoding()).Load()->Get("Value")), "€");
}

TEST_F(PageTextTest, ANewIdKeepsAttributesAndValues) {
  const ControlSource source = SourceOf(
      "<object classid=\"progid:KVOPDesignObjects.DTCPrint\" id=\"a\" title=\"T&amp;T\" "
      "declare><param name=\"value\" value=\"x\"></object>");
  EXPECT_EQ(source.WithId("b"),
            "<object classid=\"progid:KVOPDesignObjects.DTCPrint\" id=\"b\" title=\"T&amp;T\" "
            "declare><param name=\"value\" value=\"x\"></object>");
}

}  // namespace
}  // namespace kvo::editor
