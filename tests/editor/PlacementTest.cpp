// Controls where HTML has no elements: the editor does not insert them, and suggests a text that
// fits instead.
#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QMessageBox>
#include <QMimeData>
#include <algorithm>

#include "apps/editor/Panels.h"
#include "apps/editor/Toolbox.h"
#include "document/page/Page.h"
#include "host/qt/QtText.h"
#include "tests/editor/EditorTest.h"

namespace kvo::editor {
namespace {

struct HiddenPlace {
  std::string before;
  std::string after;
  // The surroundings with the suggested text, if it changes them.
  std::string newBefore = {};
  std::string newAfter = {};
  const char* called = "";  // its name in the question
};

const HiddenPlace kPlaces[] = {
    {"<!-- a", "b -->", {}, {}, "in einem Kommentar, der in Zeile 3"},
    {"<!--[if mso]>", "<![endif]-->", {}, {}, "in einem bedingten Kommentar, der in Zeile 3"},
    {"<title>", "</title>", {}, {}, "im Text eines Elements \"title\", das in Zeile 3"},
    {"<style>", "</style>", {}, {}, "\"style\", das in Zeile 3"},
    {"<script>", "</script>", {}, {}, "\"script\", das in Zeile 3"},
    {"<textarea>", "</textarea>", {}, {}, "\"textarea\", das in Zeile 3"},
    {"<xmp>", "</xmp>", {}, {}, "\"xmp\", das in Zeile 3"},
    {"<svg><![CDATA[ ", "]]></svg>", {}, {}, "in einem CDATA-Abschnitt, der in Zeile 3"},
    {"<td ", ">", {}, {}, "in einem Tag \"td\", das in Zeile 3"},
    {"<a href='", "'>", {}, {}, "im Wert eines Attributs \"href\", der in Zeile 3"},
    {"<a\nhref=\"x", "y\" b=\"c\">", "<a\nhref='x", "y' b=\"c\">",
     "im Wert eines Attributs \"href\", der in Zeile 4"},
    {"<a href=\"", "\">", "<a href='", "'>", "im Wert eines Attributs \"href\", der in Zeile 3"},
};

// Two lines in the file, but one character in the source view.
const std::string kTwoLines =
    "<object classid=\"progid:KVOPDesignObjects.DTCPrint\" id=\"a\"\n><param name=\"value\" "
    "value=\"0\"></object>\r\n\r\n";
const std::string kNumber = Print("p", "1");
const std::string kNumberText = "<kv:print value=\"1\"/>";

class PlacementTest : public testing::Test {
 protected:
  PlacementTest() : window(desk.NewWindow()) {}

  // Opens a page with the caret between the two parts.
  void Open(const std::string& before, const std::string& after) {
    window->Page().Document()->setModified(false);
    ASSERT_TRUE(window->Work().Open(desk.Put("seite.html", before + after)));
    PageText::Places places;
    const PageText content = window->Page().Content();
    content.Bytes(places);
    StandAt(places.PositionOf(before.size()));
  }
  void StandAt(int position) {
    QTextCursor cursor = Source().textCursor();
    cursor.setPosition(position);
    Source().setTextCursor(cursor);
  }
  // Answers the single question or message shown during `during`, and returns its text.
  QString Answered(const QString& button, const std::function<void()>& during) {
    QStringList said;
    WithDialogs(
        [&](QWidget& dialog) {
          auto* box = qobject_cast<QMessageBox*>(&dialog);
          ASSERT_NE(box, nullptr);
          said += box->text();
          EXPECT_EQ(box->textFormat(), Qt::PlainText);
          PressButton(dialog, button);
        },
        [&] {
          during();
          EXPECT_TRUE(WaitFor([&] { return !said.isEmpty(); }));
        });
    EXPECT_EQ(said.size(), 1);
    return said.join("\n");
  }
  int ToolOf(std::string_view className) {
    const auto& tools = window->Tools().Tools();
    for (std::size_t tool = 0; tool < tools.size(); ++tool)
      if (tools[tool].contract->name == className) return static_cast<int>(tool);
    ADD_FAILURE() << className;
    return 0;
  }
  void ExpectUntouched(const std::string& bytes) {
    EXPECT_EQ(Bytes(), bytes);
    EXPECT_EQ(window->Page().UndoName(), "");
    EXPECT_FALSE(window->isWindowModified());
  }
  std::string Bytes() const { return window->Page().Content().Bytes(); }
  SourceEdit& Source() { return window->Source(); }
  void Press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(&Source(), static_cast<Qt::Key>(key), modifiers);
  }
  // Drops data at a position.
  Qt::DropAction Drop(const QMimeData& data, int position) {
    QTextCursor cursor(Source().document());
    cursor.setPosition(position);
    const QPoint point = Source().cursorRect(cursor).center();
    QDragEnterEvent enter(point, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(Source().viewport(), &enter);
    QDropEvent drop(point, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(Source().viewport(), &drop);
    return drop.dropAction();
  }

  Desk desk;
  std::unique_ptr<MainWindow> window;
};

TEST_F(PlacementTest, ATagIsSuggestedWhereNoControlCanBe) {
  const int tool = ToolOf("DTCViewtracker");
  const std::string text = "<kv:viewtracker/>";
  for (const HiddenPlace& place : kPlaces) {
    SCOPED_TRACE(place.before);
    const std::string page = kTwoLines + place.before + place.after;
    Open(kTwoLines + place.before, place.after);
    Answered("Abbrechen", [&] { window->Tools().onInsert(tool); });
    ExpectUntouched(page);
    const QString said = Answered("Text einfügen", [&] { window->Tools().onInsert(tool); });
    EXPECT_TRUE(said.contains(ToQt(place.called))) << said.toStdString();
    EXPECT_TRUE(said.contains(ToQt(text))) << said.toStdString();
    EXPECT_EQ(Bytes(), kTwoLines + place.before + text + place.after);
    EXPECT_EQ(window->Page().UndoName(), "Öffnungszähler einfügen");
    EXPECT_EQ(window->focusWidget(), &Source());
    QTest::keyClicks(&Source(), "!");
    EXPECT_EQ(Bytes(), kTwoLines + place.before + text + "!" + place.after);
    Press(Qt::Key_Z, Qt::ControlModifier);
    Press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(Bytes(), page);
    EXPECT_EQ(window->Page().UndoName(), "");
  }
}

TEST_F(PlacementTest, PastedControlsBecomeTheirTags) {
  QApplication::clipboard()->setText(QString::fromStdString("x" + kNumber + "y"));
  for (const HiddenPlace& place : kPlaces) {
    // The text around it is pasted as well, so the quotes stay unchanged.
    if (!place.newBefore.empty()) continue;
    SCOPED_TRACE(place.before);
    Open(kTwoLines + place.before, place.after);
    Answered("Abbrechen", [&] { Press(Qt::Key_V, Qt::ControlModifier); });
    ExpectUntouched(kTwoLines + place.before + place.after);
    Answered("Text einfügen", [&] { Press(Qt::Key_V, Qt::ControlModifier); });
    EXPECT_EQ(Bytes(), kTwoLines + place.before + "x" + kNumberText + "y" + place.after);
    EXPECT_FALSE(page::HasErrors(page::Check(page::Page(Bytes()))));
    Press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(Bytes(), kTwoLines + place.before + place.after);
  }
}

TEST_F(PlacementTest, ADoubleQuotedValueGetsSingleQuotes) {
  QApplication::clipboard()->setText(QString::fromStdString(kNumber));
  for (const HiddenPlace& place : kPlaces) {
    if (place.newBefore.empty()) continue;
    SCOPED_TRACE(place.before);
    Open(kTwoLines + place.before, place.after);
    Answered("Text einfügen", [&] { Press(Qt::Key_V, Qt::ControlModifier); });
    EXPECT_EQ(Bytes(), kTwoLines + place.newBefore + kNumberText + place.newAfter);
    EXPECT_FALSE(page::HasErrors(page::Check(page::Page(Bytes()))));
    QTest::keyClicks(&Source(), "!");
    EXPECT_EQ(Bytes(), kTwoLines + place.newBefore + kNumberText + "!" + place.newAfter);
    Press(Qt::Key_Z, Qt::ControlModifier);
    Press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(Bytes(), kTwoLines + place.before + place.after);
  }
  // A single quote in the value would end it.
  Open("<a title=\"it's ", "\">");
  Answered("OK", [&] { Press(Qt::Key_V, Qt::ControlModifier); });
  ExpectUntouched("<a title=\"it's \">");
}

TEST_F(PlacementTest, OnlyASingleTagIsSuggested) {
  const int tool = ToolOf("DTCScript");
  for (const HiddenPlace& place : kPlaces) {
    SCOPED_TRACE(place.before);
    Open(kTwoLines + place.before, place.after);
    const QString said = Answered("OK", [&] { window->Tools().onInsert(tool); });
    EXPECT_TRUE(said.contains(ToQt(place.called))) << said.toStdString();
    ExpectUntouched(kTwoLines + place.before + place.after);
  }
}

TEST_F(PlacementTest, TheReplacedTextAlsoMatters) {
  // Replaces the comment's end, which leaves the insertion inside the comment.
  Open("<!-- a", " --> b --> c");
  QTextCursor cursor = Source().textCursor();
  cursor.setPosition(cursor.position() + 4, QTextCursor::KeepAnchor);
  Source().setTextCursor(cursor);
  Answered("Abbrechen", [&] { window->Tools().onInsert(ToolOf("DTCViewtracker")); });
  // Replaces the whole comment, which leaves the insertion in content.
  Open("", "<!-- a --> b");
  cursor = Source().textCursor();
  cursor.setPosition(10, QTextCursor::KeepAnchor);
  Source().setTextCursor(cursor);
  window->Tools().onInsert(0);
  EXPECT_TRUE(window->Page().IsControl(0));
}

TEST_F(PlacementTest, AControlFitsNextToSuchPlaces) {
  for (const HiddenPlace& place : kPlaces) {
    SCOPED_TRACE(place.before);
    Open("", place.before + place.after + "<p>");
    window->Tools().onInsert(0);
    EXPECT_TRUE(window->Page().IsControl(0));
    StandAt(static_cast<int>(window->Page().Content().Text().size()));
    Press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_FALSE(page::HasErrors(page::Check(page::Page(Bytes()))));
  }
}

TEST_F(PlacementTest, ADroppedToolAsksAfterTheDrag) {
  const std::string page = "ab<!-- c --> d";
  Open("", page);
  QMimeData data;
  data.setData(kToolType, QByteArray::number(ToolOf("DTCViewtracker")));
  Answered("Abbrechen", [&] { EXPECT_EQ(Drop(data, 7), Qt::IgnoreAction); });
  ExpectUntouched(page);
  Answered("Text einfügen", [&] { Drop(data, 7); });
  EXPECT_EQ(Bytes(), "ab<!-- <kv:viewtracker/>c --> d");
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Bytes(), page);
  EXPECT_EQ(Drop(data, 1), Qt::CopyAction);
  EXPECT_TRUE(window->Page().IsControl(1));
}

TEST_F(PlacementTest, ADroppedPartOfAPageAsksAfterTheDrag) {
  const std::string page = "ab<!-- c --> d";
  Open("", page);
  QMimeData data;
  data.setData(kFragmentType, QByteArray::fromStdString("x" + kNumber));
  Answered("Abbrechen", [&] { EXPECT_EQ(Drop(data, 7), Qt::IgnoreAction); });
  ExpectUntouched(page);
  Answered("Text einfügen", [&] { Drop(data, 7); });
  EXPECT_EQ(Bytes(), "ab<!-- x" + kNumberText + "c --> d");
  EXPECT_EQ(window->Page().UndoName(), "Einfügen");
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Drop(data, 1), Qt::CopyAction);
  EXPECT_EQ(Bytes(), "ax" + kNumber + "b<!-- c --> d");
}

TEST_F(PlacementTest, AControlHiddenLaterIsAnErrorOnSavingAndPublishing) {
  Open("", kTwoLines + "\r\n" + kNumber);
  StandAt(4);
  QTest::keyClicks(&Source(), "<!-- ");
  EXPECT_TRUE(WaitForViews(*window));
  EXPECT_TRUE(std::ranges::any_of(window->Analysed()->problems, [](const ProblemEntry& entry) {
    return entry.problem.severity == page::Severity::error;
  }));
  QString said = Answered("Probleme zeigen", [&] { EXPECT_FALSE(window->Work().Save()); });
  EXPECT_TRUE(said.contains("4:6: Fehler: DTCPrint \"p\"")) << said.toStdString();
  // The line in the source view, not in the file.
  EXPECT_TRUE(said.contains("in einem Kommentar, der in Zeile 4 beginnt")) << said.toStdString();
  EXPECT_TRUE(window->Problems().model()->index(0, 2).data().toString().contains(
      "in einem Kommentar, der in Zeile 4 beginnt"));
  said = Answered("OK", [&] { EXPECT_FALSE(window->Work().Publish(desk.Path("fertig.html"))); });
  EXPECT_TRUE(said.contains("4:6: Fehler: DTCPrint \"p\"")) << said.toStdString();
  EXPECT_FALSE(QFile::exists(desk.Path("fertig.html")));
}

}  // namespace
}  // namespace kvo::editor
