// The middle of the window: its layouts, the width of the page, zoom and wrapped lines.
#include "apps/editor/Views.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QDockWidget>
#include <QLineEdit>
#include <QMenuBar>
#include <QScrollBar>
#include <QTextBlock>
#include <QToolButton>
#include <QWebEnginePage>
#include <QWheelEvent>
#include <set>

#include "apps/editor/DesignFrame.h"
#include "apps/editor/FindBar.h"
#include "apps/editor/Panels.h"
#include "apps/editor/Toolbox.h"
#include "tests/editor/EditorTest.h"

namespace kvo::editor {
namespace {

using Layout = Views::Layout;
using PageWidth = DesignFrame::PageWidth;

class ViewsTest : public testing::Test {
 protected:
  ViewsTest() { Begin(); }

  void Begin() { window = desk.NewWindow(); }
  void Open(const std::string& bytes) {
    window->Page().Document()->setModified(false);
    ASSERT_TRUE(window->Work().Open(desk.Put("seite.html", bytes)));
    ASSERT_TRUE(WaitForViews(*window));
  }
  SourceEdit& Source() { return window->Source(); }
  DesignFrame& Frame() { return window->Frame(); }
  void Press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(window.get(), static_cast<Qt::Key>(key), modifiers);
  }
  QPoint Place(const QWidget& widget) { return widget.mapTo(window.get(), QPoint()); }
  QAction& Entry(const QString& text) {
    for (const QAction* menu : window->menuBar()->actions())
      for (QAction* action : menu->menu()->actions())
        if (action->text().remove('&') == text) return *action;
    ADD_FAILURE() << "no entry " << text.toStdString();
    return *window->menuBar()->actions()[0];
  }
  bool InDesign() { return window->Design().isAncestorOf(QApplication::focusWidget()); }

  QVariant Evaluate(const QString& expression) {
    return ValueIn(*window->Design().View().page(), expression);
  }
  // In the page's own pixels, as they are once the page follows.
  bool ShowsWidth(int width) {
    return WaitFor([&] {
      return std::abs(Evaluate("document.scrollingElement.clientWidth").toInt() - width) <= 1;
    });
  }
  bool HasZoom(double zoom) {
    return WaitFor([&] {
      return std::abs(Frame().Zoom() - zoom) < 0.005 &&
             std::abs(Evaluate("devicePixelRatio").toDouble() - zoom) < 0.005;
    });
  }
  bool FitsTheView() {
    return WaitFor([&] {
      return Evaluate(
                 "document.scrollingElement.scrollWidth <= document.scrollingElement.clientWidth")
          .toBool();
    });
  }

  Desk desk;
  std::unique_ptr<MainWindow> window;
};

// --- layouts ---

TEST_F(ViewsTest, ANewAuthorSeesTheDesignAndTheSourceBelowIt) {
  EXPECT_TRUE(window->Design().isVisible());
  EXPECT_TRUE(Source().isVisible());
  EXPECT_LT(Place(window->Design()).y(), Place(Source()).y());
  EXPECT_GT(window->Design().height(), Source().height());
  EXPECT_TRUE(Entry("Quelltext unter dem Entwurf").isChecked());
}

TEST_F(ViewsTest, TheFirstLayoutDependsOnTheRoomUntilTheAuthorChoosesOne) {
  QWidget parent;
  Views views(new QWidget, new QWidget, new QWidget, &parent);
  views.Restore(Layout::beside);
  EXPECT_EQ(views.Arranged(), Layout::beside);
  EXPECT_EQ(views.orientation(), Qt::Horizontal);
  views.Restore(Layout::below);
  EXPECT_EQ(views.Arranged(), Layout::below);
  EXPECT_EQ(views.orientation(), Qt::Vertical);
  views.Remember();
  views.Restore(Layout::beside);
  EXPECT_EQ(views.Arranged(), Layout::below);
}

TEST_F(ViewsTest, LayoutsChangeByKeyAndAreRemembered) {
  Press(Qt::Key_1, Qt::AltModifier);
  EXPECT_LT(Place(window->Design()).x(), Place(Source()).x());
  EXPECT_NEAR(Place(window->Design()).y(), Place(Source()).y(), 4);
  EXPECT_TRUE(Entry("Entwurf und Quelltext nebeneinander").isChecked());
  window->Middle().setSizes({100, 300});
  const int wide = Source().width();
  Press(Qt::Key_2, Qt::AltModifier);
  EXPECT_LT(Place(window->Design()).y(), Place(Source()).y());
  Press(Qt::Key_1, Qt::AltModifier);
  EXPECT_NEAR(Source().width(), wide, 2);
  Press(Qt::Key_3, Qt::AltModifier);
  EXPECT_FALSE(Source().isVisible());
  EXPECT_TRUE(window->Design().isVisible());
  EXPECT_FALSE(Entry("Quelltext").isChecked());
  EXPECT_TRUE(window->close());

  Begin();
  EXPECT_EQ(window->Middle().Arranged(), Layout::alone);
  EXPECT_FALSE(Source().isVisible());
  EXPECT_TRUE(Entry("Nur Entwurf").isChecked());
  Press(Qt::Key_1, Qt::ControlModifier);  // where it was last
  EXPECT_EQ(window->Middle().Arranged(), Layout::beside);
  EXPECT_NEAR(Source().width(), wide, 2);
}

TEST_F(ViewsTest, OneOfTheViewsAlwaysShows) {
  Press(Qt::Key_2, Qt::ControlModifier);
  EXPECT_FALSE(window->Design().isVisible());
  EXPECT_TRUE(Source().isVisible());
  EXPECT_FALSE(Entry("Entwurf").isChecked());
  Press(Qt::Key_1, Qt::ControlModifier);
  EXPECT_TRUE(window->Design().isVisible());
  EXPECT_FALSE(Source().isVisible());
  Press(Qt::Key_2, Qt::ControlModifier);
  EXPECT_FALSE(window->Design().isVisible());
  EXPECT_TRUE(Source().isVisible());
  Press(Qt::Key_2, Qt::ControlModifier);
  EXPECT_TRUE(window->Design().isVisible());
  EXPECT_TRUE(Source().isVisible());
}

TEST_F(ViewsTest, TheDesignAloneGetsTheKeyboard) {
  Open("<p>" + Print("a", "1") + "<p>" + Print("b", "2"));
  Source().setFocus();
  Press(Qt::Key_3, Qt::AltModifier);
  EXPECT_TRUE(InDesign());
  Press(Qt::Key_F4);
  EXPECT_EQ(Source().CurrentControl(), 3);
  EXPECT_TRUE(InDesign());
  auto* outline = window->findChild<QDockWidget*>("outline")->findChild<QTreeView*>();
  Q_EMIT outline->activated(outline->model()->index(1, 0));
  EXPECT_EQ(Source().CurrentControl(), 7);
  EXPECT_TRUE(InDesign());
  window->Tools().setFocus();
  window->Tools().onInsert(0);
  EXPECT_TRUE(InDesign());
}

TEST_F(ViewsTest, WhatNeedsTheSourceShowsIt) {
  Open("<object classid=\"progid:KVOPDesignObjects.DTCPrnt\"></object>");
  Press(Qt::Key_3, Qt::AltModifier);
  Press(Qt::Key_F, Qt::ControlModifier);
  EXPECT_TRUE(Source().isVisible());
  EXPECT_TRUE(window->Finder().findChild<QLineEdit*>("find")->hasFocus());
  Press(Qt::Key_3, Qt::AltModifier);
  Q_EMIT window->Problems().activated(window->Problems().model()->index(0, 0));
  EXPECT_TRUE(Source().isVisible());
  EXPECT_TRUE(Source().hasFocus());
}

// --- the width of the page ---

constexpr char kWide[] =
    "<!DOCTYPE html><body style='margin:0'><table width=600><tr><td>breit</table>";
constexpr char kTall[] = "<!DOCTYPE html><body style='margin:0'><div style='height:3000px'>hoch";

TEST_F(ViewsTest, APageThatIsTooWideIsShownWhole) {
  Open("<!DOCTYPE html><p>schmal");
  EXPECT_TRUE(HasZoom(1));
  for (const std::string doctype : {"<!DOCTYPE html>", ""}) {
    Open(doctype + (kWide + 15));
    EXPECT_TRUE(WaitFor([&] { return Frame().Zoom() < 0.6; })) << Frame().Zoom();
    EXPECT_TRUE(FitsTheView());
    const double before = Frame().Zoom();
    window->resize(window->width() + 200, window->height());
    EXPECT_TRUE(WaitFor([&] { return Frame().Zoom() > before + 0.02; }));
    EXPECT_TRUE(FitsTheView());
    window->resize(window->width() - 200, window->height());
    EXPECT_TRUE(WaitFor([&] { return Frame().Zoom() < before + 0.01; }));
    EXPECT_TRUE(FitsTheView());
  }
  Open("<!DOCTYPE html><p>schmal");
  EXPECT_TRUE(HasZoom(1));
  // What is typed makes it wider.
  Source().selectAll();
  Source().InsertFragment(kWide, "breit");
  EXPECT_TRUE(WaitFor([&] { return Frame().Zoom() < 0.6; }));
  EXPECT_TRUE(FitsTheView());
}

TEST_F(ViewsTest, APageThatIsAlwaysWiderThanTheViewIsNotZoomedOut) {
  Open("<!DOCTYPE html><body><div style='width:100%;padding:30px'>immer breiter");
  QTest::qWait(1500);
  EXPECT_TRUE(HasZoom(1));
  window->resize(window->width() + 100, window->height());
  QTest::qWait(500);
  EXPECT_TRUE(HasZoom(1));
  Open(kWide);
  EXPECT_TRUE(WaitFor([&] { return Frame().Zoom() < 0.8; }));
  EXPECT_TRUE(FitsTheView());
}

TEST_F(ViewsTest, ThePageGetsTheWidthOfAMailProgramOrAPhone) {
  window->resize(1400, 700);
  for (const std::string page : {kWide, kTall, "<p>ohne Doctype"}) {
    Open(page);
    Entry("600 Pixel breit, wie im Mailprogramm").trigger();
    EXPECT_TRUE(ShowsWidth(600)) << page;
    EXPECT_TRUE(HasZoom(1));
    const int left = window->Design().x();
    EXPECT_GT(left, 20);
    EXPECT_NEAR(Frame().width() - window->Design().geometry().right() - 1, left, 1);
    Entry("360 Pixel breit, wie auf dem Telefon").trigger();
    EXPECT_TRUE(ShowsWidth(360)) << page;
    EXPECT_GT(window->Design().x(), left + 100);
    Entry("An die Breite anpassen").trigger();
    EXPECT_EQ(window->Design().geometry(), Frame().rect());
  }
}

TEST_F(ViewsTest, TheWidthOfThePageIsRemembered) {
  Open(kTall);
  Entry("360 Pixel breit, wie auf dem Telefon").trigger();
  EXPECT_TRUE(window->close());
  Begin();
  Open(kTall);
  EXPECT_TRUE(ShowsWidth(360));
  EXPECT_TRUE(Entry("360 Pixel breit, wie auf dem Telefon").isChecked());
}

TEST_F(ViewsTest, ATableOf600PixelsFitsIntoAMailWithTheUsualMargins) {
  window->resize(1400, 700);
  for (const std::string doctype : {"<!DOCTYPE html>", ""}) {
    Open(doctype + "<table width=600 cellspacing=0 cellpadding=0><tr><td>Mail</table>");
    Entry("600 Pixel breit, wie im Mailprogramm").trigger();
    EXPECT_TRUE(ShowsWidth(616));
    EXPECT_TRUE(FitsTheView());
    EXPECT_TRUE(HasZoom(1));
  }
}

TEST_F(ViewsTest, ZoomsBackWhenAnEditMakesThePageNarrower) {
  for (const std::string doctype : {"<!DOCTYPE html>", ""}) {
    Open(doctype +
         "<body style='margin:0'><div style='width:600px'>a</div>"
         "<div style='width:300px'>b</div>");
    EXPECT_TRUE(WaitFor([&] { return Frame().Zoom() < 0.6; }));
    EXPECT_TRUE(FitsTheView());
    const double before = Frame().Zoom();
    const auto at = static_cast<int>(window->Page().Content().Text().indexOf("600px"));
    window->Page().Range(at, at + 5).insertText("300px");
    EXPECT_TRUE(WaitFor([&] { return Frame().Zoom() > before * 1.5; })) << Frame().Zoom();
    EXPECT_TRUE(FitsTheView());
  }
}

TEST_F(ViewsTest, ANarrowViewShowsTheWidthSmaller) {
  window->resize(880, 700);
  Open(kTall);
  ASSERT_LT(Frame().width(), 500);
  Entry("600 Pixel breit, wie im Mailprogramm").trigger();
  EXPECT_TRUE(WaitFor([&] { return Frame().Zoom() < 0.9; }));
  EXPECT_TRUE(WaitFor([&] {
    return std::abs(Evaluate("document.scrollingElement.clientWidth").toInt() - 600) <= 8;
  })) << Evaluate("document.scrollingElement.clientWidth").toInt();
  const double most = Frame().Zoom();
  Entry("Vergrößern").trigger();
  EXPECT_NEAR(Frame().Zoom(), most, 0.001);
  Entry("Verkleinern").trigger();
  EXPECT_LT(Frame().Zoom(), most);
  EXPECT_TRUE(ShowsWidth(600));
}

TEST_F(ViewsTest, ZoomsByKeyAndWheel) {
  Open("<!DOCTYPE html><p>schmal");
  Press(Qt::Key_Plus, Qt::ControlModifier);
  EXPECT_TRUE(HasZoom(1.1));
  Press(Qt::Key_Plus, Qt::ControlModifier);
  EXPECT_TRUE(HasZoom(1.25));
  Press(Qt::Key_0, Qt::ControlModifier);
  EXPECT_TRUE(HasZoom(1));
  Press(Qt::Key_Minus, Qt::ControlModifier);
  EXPECT_TRUE(HasZoom(0.9));
  const auto turn = [&](int angle, Qt::KeyboardModifiers modifiers) {
    QWidget* view = window->Design().View().focusProxy();
    const QPointF place(20, 20);
    QWheelEvent wheel(place, view->mapToGlobal(place), {}, {0, angle}, Qt::NoButton, modifiers,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(view, &wheel);
  };
  turn(120, Qt::ControlModifier);
  EXPECT_TRUE(HasZoom(1));
  turn(-120, Qt::ControlModifier);
  turn(-120, Qt::ControlModifier);
  EXPECT_TRUE(HasZoom(0.8));
  turn(-120, Qt::NoModifier);
  QTest::qWait(100);
  EXPECT_TRUE(HasZoom(0.8));
  // Another page, and the way back to what fits.
  Open("<!DOCTYPE html><p>andere");
  EXPECT_TRUE(HasZoom(0.8));
  Entry("An die Breite anpassen").trigger();
  EXPECT_TRUE(HasZoom(1));
  for (int more = 0; more < 20; ++more) Press(Qt::Key_Plus, Qt::ControlModifier);
  EXPECT_TRUE(HasZoom(4));
  for (int less = 0; less < 30; ++less) Press(Qt::Key_Minus, Qt::ControlModifier);
  EXPECT_TRUE(HasZoom(0.25));
}

// --- wrapped lines ---

TEST_F(ViewsTest, LongLinesAreWrappedUnlessTheAuthorSwitchesThatOff) {
  Open("kurz\n<p>" + std::string(400, 'x') + "\n" + std::string(80, 'y') + " " +
       std::string(80, 'z'));
  EXPECT_EQ(Source().horizontalScrollBar()->maximum(), 0);
  QAction& wrap = Entry("Zeilen umbrechen");
  EXPECT_TRUE(wrap.isChecked());
  wrap.trigger();
  EXPECT_GT(Source().horizontalScrollBar()->maximum(), 0);
  EXPECT_TRUE(window->close());
  Begin();
  EXPECT_EQ(Source().lineWrapMode(), QPlainTextEdit::NoWrap);
  EXPECT_FALSE(Entry("Zeilen umbrechen").isChecked());
  Entry("Zeilen umbrechen").trigger();
  EXPECT_TRUE(window->close());
  Begin();
  EXPECT_EQ(Source().lineWrapMode(), QPlainTextEdit::WidgetWidth);
}

TEST_F(ViewsTest, AWideBoxIsDrawnAsWideAsItsLineWhenLinesAreWrapped) {
  const std::string list =
      "<object classid=\"progid:KVOPDesignObjects.DTCProductList\" id=\"l\"></object>";
  for (const std::string indentation : {"      ", "\t", "<td>"}) {
    Open(indentation + list);
    EXPECT_EQ(Source().horizontalScrollBar()->maximum(), 0) << indentation;
  }
  Open(list);
  const auto width = [&] {
    const QTextBlock block = Source().document()->firstBlock();
    Source().document()->documentLayout()->blockBoundingRect(block);  // lays it out
    const QTextLine line = block.layout()->lineAt(0);
    return line.cursorToX(1) - line.cursorToX(0);
  };
  Entry("Zeilen umbrechen").trigger();
  const double wide = width();
  ASSERT_GT(wide, Source().viewport()->width());
  EXPECT_GT(Source().horizontalScrollBar()->maximum(), 0);
  Entry("Zeilen umbrechen").trigger();
  EXPECT_LT(width(), Source().viewport()->width());
  EXPECT_EQ(Source().horizontalScrollBar()->maximum(), 0);
  window->resize(window->width() + 100, window->height());
  EXPECT_NEAR(width(), Source().viewport()->width(), 12);
  window->resize(1900, window->height());
  EXPECT_NEAR(width(), wide, 1);
}

TEST_F(ViewsTest, EveryBoxOfAWrappedLineIsHitWithinItsBordersAlone) {
  std::string page = "Anfang ";
  constexpr int kBoxes = 12;
  for (int box = 0; box < kBoxes; ++box) page += Print("p" + std::to_string(box), "Wert");
  Open(page + " Ende");
  const QTextBlock block = Source().document()->firstBlock();
  ASSERT_GT(block.layout()->lineCount(), 2);
  const double lineHeight = block.layout()->lineAt(0).height();
  std::set<int> rows;
  for (const Embedded& part : window->Page().Content().EmbeddedParts()) {
    QTextCursor cursor(Source().document());
    cursor.setPosition(part.position);
    const QRect left = Source().cursorRect(cursor);
    rows.insert(left.top());
    for (const int x : {3, 40}) {
      Source().moveCursor(QTextCursor::Start);
      QTest::mouseClick(Source().viewport(), Qt::LeftButton, {},
                        QPoint(left.left() + x, left.center().y()));
      EXPECT_EQ(Source().CurrentControl(), part.position) << x;
      EXPECT_TRUE(Source().textCursor().hasSelection());
    }
  }
  EXPECT_GT(rows.size(), 1U);
  EXPECT_GT(lineHeight, 5);
  // Right of the last box of a line that another one follows, there is nothing.
  const QPoint behind(Source().viewport()->width() - 1,
                      Source().cursorRect(QTextCursor(block)).center().y());
  QTest::mouseClick(Source().viewport(), Qt::LeftButton, {}, behind);
  EXPECT_FALSE(Source().textCursor().hasSelection());
}

// The row of a picture in which something is drawn over the ground, from a row on.
int FirstInk(const QImage& image, int from) {
  const QColor ground = image.pixelColor(0, image.height() - 1);
  for (int y = from; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      if (std::abs(image.pixelColor(x, y).lightness() - ground.lightness()) > 60) return y;
  return -1;
}

TEST_F(ViewsTest, TheNumberOfAWrappedLineIsAtItsTop) {
  Open(std::string(70, 'x') + "\n");
  const QTextBlock block = Source().document()->firstBlock();
  ASSERT_GT(block.layout()->lineCount(), 1);
  const double lineHeight = block.layout()->lineAt(0).height();
  const QRect second = Source().cursorRect(QTextCursor(block.next()));
  const int margin = Source().viewport()->x() - 1;
  const QImage numbers =
      Source().grab(QRect(1, Source().viewport()->y(), margin, second.bottom())).toImage();
  const int one = FirstInk(numbers, 0);
  EXPECT_GE(one, 0);
  EXPECT_LT(one, lineHeight);
  // Nothing below it before the next line's.
  const int two = FirstInk(numbers, static_cast<int>(lineHeight) + 1);
  EXPECT_GE(two, second.top());
}

}  // namespace
}  // namespace kvo::editor
