// The document behind the source view: stays in step with the page's text, and names its undo
// steps.
#include "apps/editor/PageDocument.h"

#include <QTextBlock>
#include <random>

#include "common/values/RuntimeError.h"
#include "tests/editor/EditorTest.h"

namespace kvo::editor {
namespace {

class PageDocumentTest : public testing::Test {
 protected:
  PageDocumentTest() : page(nullptr) {}
  void Load(const std::string& bytes) { page.Load(PageText(bytes)); }
  std::string Bytes() const { return page.Content().Bytes(); }
  void Type(int position, const QString& text) {
    QTextCursor cursor(page.Document());
    cursor.setPosition(position);
    cursor.insertText(text);
  }
  void Erase(int begin, int end) {
    QTextCursor cursor(page.Document());
    cursor.setPosition(begin);
    cursor.setPosition(end, QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
  }

  Desk desk;
  PageDocument page;
};

TEST_F(PageDocumentTest, ContainsTheLoadedPage) {
  const std::string bytes = "\xEF\xBB\xBF<p>\r\n\xFF" + Print("a", "1") + "\r\n\n</p>";
  Load(bytes);
  EXPECT_EQ(Bytes(), bytes);
  EXPECT_FALSE(page.Document()->isModified());
  EXPECT_FALSE(page.Document()->isUndoAvailable());
  EXPECT_EQ(page.UndoName(), "");
}

TEST_F(PageDocumentTest, NothingOutsideAnEditChanges) {
  // A byte order mark declares UTF-8, whatever bytes follow.
  const std::string before =
      "\xEF\xBB\xBF"
      "eins\r\nzwei\n\xFF\rdrei " +
      Print("a", "1");
  const std::string after = " vier\r\nfünf\x01\n" + Print("b", "2") + "\r";
  Load(before + after);
  const int place = static_cast<int>(PageText(before).Text().size());
  Type(place, "ö!");
  EXPECT_EQ(Bytes(), before + "ö!" + after);
}

TEST_F(PageDocumentTest, TextNextToAControlIsText) {
  Load(Print("a", "1"));
  Type(1, "dahinter");
  Type(0, "davor");
  EXPECT_EQ(Bytes(), "davor" + Print("a", "1") + "dahinter");
}

TEST_F(PageDocumentTest, ANewLineBreakMatchesThePagesOthers) {
  Load("a\r\nb\r\nc\nd");
  Type(1, "\n");
  EXPECT_EQ(Bytes(), "a\r\n\r\nb\r\nc\nd");
}

TEST_F(PageDocumentTest, StepsHaveNames) {
  Load("x" + Print("Preis", "1"));
  Type(0, "a");
  Type(1, "b");
  EXPECT_EQ(page.UndoName(), "Eingabe");
  const int control = 3;
  page.ReplaceControl(control, QByteArray::fromStdString(Print("Preis", "2")), "Eins");
  EXPECT_EQ(page.UndoName(), "Eins");
  QTextCursor cursor(page.Document());
  page.Insert(cursor, PageText("<i>\n" + Print("b", "3")), "Zwei");
  EXPECT_EQ(page.UndoName(), "Zwei");
  EXPECT_EQ(page.RedoName(), "");

  page.Undo();
  EXPECT_EQ(page.UndoName(), "Eins");
  EXPECT_EQ(page.RedoName(), "Zwei");
  page.Undo();
  EXPECT_EQ(Bytes(), "abx" + Print("Preis", "1"));
  EXPECT_EQ(page.UndoName(), "Eingabe");
  EXPECT_EQ(page.RedoName(), "Eins");
  page.Undo();
  EXPECT_EQ(Bytes(), "x" + Print("Preis", "1"));
  EXPECT_EQ(page.UndoName(), "");
  EXPECT_EQ(page.RedoName(), "Eingabe");
  for (int step = 0; step < 3; ++step) page.Redo();
  EXPECT_EQ(Bytes(), "<i>\n" + Print("b", "3") + "abx" + Print("Preis", "2"));
  EXPECT_EQ(page.RedoName(), "");
}

TEST_F(PageDocumentTest, SavingIsUndoneWithTheStepBeforeIt) {
  Load("x" + Print("a", "1"));
  Type(0, "y");
  page.TakeOver(PageText("yx" + Print("a", "gespeichert")), {});
  EXPECT_EQ(Bytes(), "yx" + Print("a", "gespeichert"));
  EXPECT_EQ(page.UndoName(), "Eingabe");
  page.Undo();
  EXPECT_EQ(Bytes(), "x" + Print("a", "1"));
  EXPECT_EQ(page.UndoName(), "");
  EXPECT_EQ(page.RedoName(), "Eingabe");
  page.Redo();
  EXPECT_EQ(Bytes(), "yx" + Print("a", "gespeichert"));
}

TEST_F(PageDocumentTest, ReplacingAllChangesOnlyTheDifferences) {
  Load("a\r\nb\nc " + Print("a", "1") + " d\r\n");
  QTextCursor mark(page.Document());
  mark.setPosition(1);
  page.ReplaceAll(PageText("a\r\nb\nc " + Print("a", "2") + " d\r\n", "\r\n"), "Alles");
  EXPECT_EQ(Bytes(), "a\r\nb\nc " + Print("a", "2") + " d\r\n");
  EXPECT_EQ(mark.position(), 1);
  page.Undo();
  EXPECT_EQ(Bytes(), "a\r\nb\nc " + Print("a", "1") + " d\r\n");
}

TEST_F(PageDocumentTest, KnowsItsControls) {
  Load("x" + Print("Preis", "#order.total#") + Print("Preis1", "2"));
  EXPECT_FALSE(page.IsControl(0));
  ASSERT_TRUE(page.IsControl(1));
  EXPECT_EQ(page.LookAt(0), nullptr);
  const auto look = page.LookAt(1);
  EXPECT_EQ(look->id, "Preis");
  EXPECT_EQ(look->contract->name, "DTCPrint");
  EXPECT_EQ(look->description, "Control DTCPrint print #order.total#, Preis");
  EXPECT_THROW(page.SourceAt(0), RuntimeError);
  EXPECT_TRUE(page.HasId("Preis"));
  EXPECT_FALSE(page.HasId("preis"));
  EXPECT_EQ(page.FreeId("Preis"), "Preis2");
}

// Reads the text from the document itself, without the page's text.
QString RawText(const QTextDocument& document) {
  QString text;
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
    if (block.blockNumber() > 0) text += kLineBreakCharacter;
    text += block.text();
  }
  return text;
}

TEST_F(PageDocumentTest, StaysInStepThroughAnyEdits) {
  const std::string pieces[] = {
      "ab", "\r\n", "\n", "\r", "\xFF", "ä€", "\x01", Print("p", "1"), Print("q", "&amp;"), "<b>"};
  std::mt19937 random(20);  // the same edits in every run
  const auto below = [&](int limit) {
    return std::uniform_int_distribution<int>(0, limit - 1)(random);
  };
  for (int round = 0; round < 60; ++round) {
    std::string start;
    for (int count = below(12); count > 0; --count) start += pieces[below(std::size(pieces))];
    Load(start);
    ASSERT_EQ(Bytes(), start);
    std::vector<std::string> states = {start};
    for (int edit = 0; edit < 25; ++edit) {
      const int size = static_cast<int>(page.Content().Text().size());
      const int begin = below(size + 1);
      const int end = std::min(size, begin + below(6));
      switch (below(4)) {
        case 0:
          Type(begin, below(3) == 0 ? "\n" : "x");
          break;
        case 1:
          Erase(begin, end);
          break;
        default: {
          QTextCursor cursor(page.Document());
          cursor.setPosition(begin);
          cursor.setPosition(end, QTextCursor::KeepAnchor);
          page.Insert(cursor, PageText(pieces[below(std::size(pieces))] + pieces[below(10)]), "s");
        }
      }
      ASSERT_EQ(page.Content().Text(), RawText(*page.Document()));
      // Every embedded character has a part, and every part has a character.
      int characters = 0;
      for (int at = 0; at < page.Content().Text().size(); ++at)
        if (page.Content().Text()[at] == kEmbeddedCharacter) {
          ASSERT_NE(page.Content().At(at), nullptr) << at;
          ++characters;
        }
      int parts = 0;
      for (const Embedded& part : page.Content().EmbeddedParts())
        parts += part.kind != Embedded::Kind::lineBreak;
      ASSERT_EQ(parts, characters);
    }
    const std::string finished = Bytes();
    while (page.Document()->isUndoAvailable()) page.Undo();
    EXPECT_EQ(Bytes(), start);
    while (page.Document()->isRedoAvailable()) page.Redo();
    EXPECT_EQ(Bytes(), finished);
  }
}

}  // namespace
}  // namespace kvo::editor
