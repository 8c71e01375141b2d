// The problems of a page in the design view: marks that are no part of the page, tool tips, and the
// keys that go through them.
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QHelpEvent>
#include <QMimeData>
#include <QStatusBar>
#include <QToolTip>
#include <QWebEnginePage>

#include "apps/editor/Colors.h"
#include "apps/editor/Panels.h"
#include "apps/editor/Views.h"
#include "tests/editor/EditorTest.h"

namespace kvo::editor {
namespace {

const std::string kBroken = "<object classid=\"progid:KVOPDesignObjects.DTCPrnt\"></object>";
const std::string kStray = "<!--KVO CONTROL ENDSPAN 1-->";

// A warning: the second of two controls with one id.
std::string Twice() { return Print("a", "1") + "<br>" + Print("a", "2"); }

class ProblemMarksTest : public testing::Test {
 protected:
  ProblemMarksTest() : window(desk.NewWindow()) {}

  void Open(const std::string& bytes) {
    window->Page().Document()->setModified(false);
    ASSERT_TRUE(window->Work().Open(desk.Put("seite.html", bytes)));
    WaitForMarks();
  }
  void WaitForMarks() {
    ASSERT_TRUE(WaitForViews(*window));
    ASSERT_TRUE(WaitFor([&] { return Evaluate("kvo.idle()").toBool(); }));
  }
  QVariant Evaluate(const QString& expression) {
    return ValueIn(*window->Design().View().page(), expression);
  }
  // What is marked, in the order of the page, as "error img#0" or "warning p".
  QStringList Marks() {
    return Evaluate(
               "[...document.querySelectorAll('*')].map(element => {"
               "  const style = getComputedStyle(element).outlineStyle;"
               "  const kind = {double: 'error ', dashed: 'warning '}[style];"
               "  const box = element.getAttribute('data-kvo');"
               "  return kind && kind + element.localName + (box === null ? '' : '#' + box);"
               "}).filter(mark => mark)")
        .toStringList();
  }
  std::string Tree() {
    return Evaluate("document.documentElement.outerHTML").toString().toStdString();
  }
  std::string TreeOfText() {
    return Evaluate(
               "new DOMParser().parseFromString(kvo.text(), 'text/html').documentElement.outerHTML")
        .toString()
        .toStdString();
  }
  std::string Bytes() const { return window->Page().Content().Bytes(); }
  QWidget& Browser() { return *window->Design().View().focusProxy(); }
  QPoint PointIn(const QString& selector) {
    const QVariantList point = Evaluate(
                                   "(r => [r.x + r.width / 2, r.y + r.height / 2])("
                                   "document.querySelector('" +
                                   selector + "').getBoundingClientRect())")
                                   .toList();
    return {point.value(0).toInt(), point.value(1).toInt()};
  }
  // Returns the tool tip that follows when the pointer rests on an element.
  QString TipOn(const QString& selector) {
    Evaluate("window.over = ''; addEventListener('mouseover', e => over = e.target, true); 0");
    const QPoint point = PointIn(selector);
    EXPECT_TRUE(WaitFor([&] {
      QTest::mouseMove(&Browser(), point + QPoint(0, 1));
      QTest::mouseMove(&Browser(), point);
      return Evaluate("over === document.querySelector('" + selector + "')").toBool();
    }));
    QToolTip::hideText();
    EXPECT_TRUE(WaitFor([] { return !QToolTip::isVisible(); }));
    QHelpEvent help(QEvent::ToolTip, point, Browser().mapToGlobal(point));
    QApplication::sendEvent(&Browser(), &help);
    return QToolTip::isVisible() ? QToolTip::text().replace(QChar::Nbsp, ' ') : QString();
  }
  void FocusDesign() {
    window->Design().setFocus();
    ASSERT_TRUE(window->Design().isAncestorOf(QApplication::focusWidget()));
  }
  // A key of the menus, pressed in the design view.
  void Press(int key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key), modifiers);
  }
  // Where the view's selection begins, as "text offset" or "img#0".
  QString Selected() {
    return Evaluate(
               "(() => { const range = getSelection().getRangeAt(0);"
               "const node = range.startContainer, child = node.childNodes[range.startOffset];"
               "if (node.nodeType === 3) return node.data + ' ' + range.startOffset;"
               "return node.localName + ' ' + (child && child.localName || '') +"
               "(range.collapsed ? '' : ' selected'); })()")
        .toString();
  }

  Desk desk;
  std::unique_ptr<MainWindow> window;
};

TEST_F(ProblemMarksTest, AreNoPartOfThePage) {
  const std::string page = "<!DOCTYPE html><p class=\"kvo-marked\">Wort " + kStray + " Satz</p>" +
                           kBroken + "<p>" + Twice() + "</p>";
  Open(page);
  EXPECT_EQ(Marks(), (QStringList{"error p", "error img#0", "warning img#2"}));
  EXPECT_EQ(Tree(), TreeOfText());
  EXPECT_EQ(Bytes(), page);
  EXPECT_FALSE(window->Page().IsModified());
  EXPECT_EQ(window->Page().UndoName(), "");

  // The marks are neither copied nor typed into.
  FocusDesign();
  window->Design().SelectAll();
  ASSERT_TRUE(WaitFor([&] { return !Evaluate("getSelection().isCollapsed").toBool(); }));
  QGuiApplication::clipboard()->clear();
  Press(Qt::Key_C, Qt::ControlModifier);
  ASSERT_TRUE(WaitFor([&] {
    const QMimeData* copied = QGuiApplication::clipboard()->mimeData();
    return copied != nullptr && copied->hasHtml();
  }));
  for (const QString& format : QGuiApplication::clipboard()->mimeData()->formats()) {
    const QByteArray copied = QGuiApplication::clipboard()->mimeData()->data(format);
    for (const char* trace : {"outline", "dashed", "double", "nth-child"})
      EXPECT_FALSE(copied.contains(trace)) << format.toStdString() << ' ' << trace;
  }
  Evaluate("getSelection().collapse(document.querySelector('p').firstChild, 4); 0");
  QTest::keyClicks(QApplication::focusWidget(), "e");
  ASSERT_TRUE(WaitFor([&] { return window->Page().IsModified(); }));
  WaitForMarks();
  std::string typed = page;
  typed.replace(typed.find("Wort"), 4, "Worte");
  EXPECT_EQ(Bytes(), typed);
  EXPECT_EQ(Tree(), TreeOfText());
  window->Page().Undo();
  EXPECT_EQ(Bytes(), page);
  EXPECT_EQ(window->Page().UndoName(), "");
  WithDialogs([](QWidget& dialog) { PressButton(dialog, "Trotzdem speichern"); },
              [&] { window->Work().Save(); });
  EXPECT_EQ(desk.Bytes("seite.html"), page);
}

TEST_F(ProblemMarksTest, FollowEditsAndGoWithTheProblem) {
  Open("<p>eins</p><p>zwei " + kStray + "</p>" + kBroken);
  EXPECT_EQ(Marks(), (QStringList{"error p", "error img#0"}));
  EXPECT_EQ(Evaluate("getComputedStyle(document.querySelectorAll('p')[1]).outlineStyle"), "double");
  QTextCursor cursor(window->Page().Document());
  cursor.insertText("<h1>davor</h1><p>" + QString::fromStdString(Print("b", "1")));
  WaitForMarks();
  EXPECT_EQ(Marks(), (QStringList{"error p", "error img#1"}));
  EXPECT_EQ(Evaluate("getComputedStyle(document.querySelectorAll('p')[2]).outlineStyle"), "double");
  const QString text = window->Page().Content().Text();
  const auto at = static_cast<int>(text.indexOf("<!--"));
  window->Page().Range(at, at + static_cast<int>(kStray.size())).removeSelectedText();
  WaitForMarks();
  EXPECT_EQ(Marks(), QStringList{"error img#1"});
  window->Source().selectAll();
  window->Source().InsertFragment("<p>neu</p>", "Schritt");
  WaitForMarks();
  EXPECT_EQ(Marks(), QStringList());
  window->Page().Undo();
  WaitForMarks();
  EXPECT_EQ(Marks(), QStringList{"error img#1"});
  // Another doctype loads another document.
  cursor.movePosition(QTextCursor::Start);
  cursor.insertText("<!DOCTYPE html>");
  WaitForMarks();
  EXPECT_TRUE(WaitFor([&] { return Marks() == QStringList{"error img#1"}; }));
}

TEST_F(ProblemMarksTest, AreAtTheNearestElementThatShows) {
  const auto marksOf = [&](const std::string& page) {
    Open(page);
    return Marks().join(", ").toStdString();
  };
  const std::string control = Print("x", "1");
  EXPECT_EQ(marksOf("<title>" + kBroken + "</title><p>Text"), "error html");
  EXPECT_EQ(marksOf("<p>Text <a href='" + control + "'>Link</a>"), "error a");
  EXPECT_EQ(marksOf("<p>Text <img alt='" + control + "' src=x width=9 height=9>"), "error img");
  EXPECT_EQ(marksOf("<table><tr><td>a<td>b " + kStray + "</table>"), "error td");
  EXPECT_EQ(marksOf("<p>Text<div hidden>" + kStray + "</div>"), "error body");
  EXPECT_EQ(marksOf("<div><style>p{x:'" + kBroken + "'}</style><p>Text</div>"), "error div");
  // Where the trees differ: in what a browser moves out of the table.
  EXPECT_EQ(marksOf("<div><table>" + kBroken + "<tr><td>a</table></div>"), "error img#0");
}

TEST_F(ProblemMarksTest, AreSeenWhateverThePageLooksLike) {
  Open(
      "<!DOCTYPE html><style>*{outline:none!important;color:#fff;background:#000}"
      "p.x{outline:0!important}</style><p class=x>a " +
      kStray + "</p>" + kBroken + "<p>" + Twice());
  EXPECT_EQ(Marks(), (QStringList{"error p", "error img#0", "warning img#2"}));
  const auto colorOf = [&](const char* selector) {
    const QStringList parts =
        Evaluate(
            QString("getComputedStyle(document.querySelector('%1')).outlineColor.match(/\\d+/g)")
                .arg(selector))
            .toStringList();
    return QColor(parts.value(0).toInt(), parts.value(1).toInt(), parts.value(2).toInt());
  };
  for (const char* selector : {"p", "img[data-kvo=\"2\"]"})
    for (const Scheme scheme : {Scheme::light, Scheme::dark})
      EXPECT_GE(Contrast(colorOf(selector), Colors(scheme).color(QPalette::Base)), 3) << selector;
  // The selected box keeps both marks.
  window->Source().SelectControl(window->Page().Content().EmbeddedParts().back().position);
  EXPECT_TRUE(WaitFor([&] {
    return Evaluate("getComputedStyle(document.querySelector('.kvo-marked')).boxShadow") != "none";
  }));
  EXPECT_EQ(Marks().back(), "warning img#2");
}

TEST_F(ProblemMarksTest, ExplainThemselvesUnderThePointer) {
  Open("<p id=p>Text " + kStray + " <b id=b>fett</b></p><div id=ohne>ohne</div>" + kBroken +
       "<br>" + Print("<b>&</b>", "1") + "<br>" + Print("<b>&</b>", "2"));
  const QString tip = TipOn("#b");
  EXPECT_TRUE(tip.contains("Fehler: ")) << tip.toStdString();
  EXPECT_TRUE(tip.contains("stray-end")) << tip.toStdString();
  EXPECT_EQ(TipOn("#ohne"), "");
  EXPECT_TRUE(TipOn("img[data-kvo=\"0\"]").contains("Strg+. behebt es"));
  const QString warning = TipOn("img[data-kvo=\"2\"]");
  EXPECT_TRUE(warning.contains("Warnung: ")) << warning.toStdString();
  EXPECT_TRUE(warning.contains("&lt;b&gt;")) << warning.toStdString();
}

TEST_F(ProblemMarksTest, F8GoesThroughThemInTheDesignView) {
  Open("<p>eins " + kStray + "</p><p>zwei</p>" + kBroken + "<p>drei</p>" + Twice());
  window->Middle().Arrange(Views::Layout::alone);
  FocusDesign();
  const QStringList places = {"eins  5", "body img selected", "body img selected"};
  for (int round = 0; round < 2; ++round) {
    for (int row = 0; row < 3; ++row) {
      Press(Qt::Key_F8);
      EXPECT_EQ(window->Problems().ChosenRow(), row);
      EXPECT_TRUE(WaitFor([&] { return Selected() == places[row]; })) << Selected().toStdString();
      WaitForMarks();
      const QString note = window->statusBar()->currentMessage();
      EXPECT_TRUE(note.startsWith(row < 2 ? "Fehler: " : "Warnung: ")) << note.toStdString();
    }
  }
  Press(Qt::Key_F8, Qt::ShiftModifier);
  EXPECT_EQ(window->Problems().ChosenRow(), 1);
  EXPECT_TRUE(window->Design().isAncestorOf(QApplication::focusWidget()));
  EXPECT_TRUE(window->Middle().IsSourceHidden());
}

TEST_F(ProblemMarksTest, F8PassesPlacesThatTheViewCannotShow) {
  const std::string control = Print("x", "1");
  Open("<html><head><title>" + kBroken + "</title></head><body><p><a href='" + control +
       "'>Link</a></p><table>" + kStray + "<tr><td>a</td></tr>" + kStray +
       "</table><!-- c --><select><option>" + kStray + "</select>" + kStray + kBroken +
       "</body></html>" + kStray);
  const auto count = static_cast<int>(window->Analysed()->problems.size());
  ASSERT_GE(count, 7);
  FocusDesign();
  for (int row = 0; row < 2 * count; ++row) {
    Press(Qt::Key_F8);
    EXPECT_EQ(window->Problems().ChosenRow(), row % count);
    WaitForMarks();
    EXPECT_FALSE(window->statusBar()->currentMessage().startsWith("Diese Stelle"));
  }
}

TEST_F(ProblemMarksTest, FixesTheProblemInTheDesignView) {
  Open("<p>Text</p><p>" + kBroken + "</p>");
  window->Middle().Arrange(Views::Layout::alone);
  FocusDesign();
  Press(Qt::Key_F8);
  EXPECT_TRUE(WaitFor([&] { return Selected() == "p img selected"; }));
  WaitForMarks();
  Press(Qt::Key_Period, Qt::ControlModifier);
  EXPECT_NE(Bytes().find("DTCPrint"), std::string::npos);
  WaitForMarks();
  EXPECT_EQ(Marks(), QStringList());
  EXPECT_TRUE(window->Design().isAncestorOf(QApplication::focusWidget()));
  EXPECT_TRUE(WaitFor([&] { return Selected() == "p img selected"; })) << Selected().toStdString();
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_TRUE(WaitFor([&] { return Bytes().find("DTCPrnt") != std::string::npos; }));
}

}  // namespace
}  // namespace kvo::editor
