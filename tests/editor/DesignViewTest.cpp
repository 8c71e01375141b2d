// The design view follows the source, runs no scripts and fetches nothing.
#include <QApplication>
#include <QTcpServer>
#include <QWebEnginePage>

#include "tests/editor/EditorTest.h"

namespace kvo::editor {
namespace {

class DesignViewTest : public testing::Test {
 protected:
  DesignViewTest() : window(desk.NewWindow()) {}

  void Open(const std::string& bytes) {
    window->Page().Document()->setModified(false);
    ASSERT_TRUE(window->Work().Open(desk.Put("seite.html", bytes)));
    ASSERT_TRUE(WaitForViews(*window));
  }
  QVariant Evaluate(const QString& expression) {
    return ValueIn(*window->Design().View().page(), expression);
  }

  Desk desk;
  std::unique_ptr<MainWindow> window;
};

TEST_F(DesignViewTest, ShowsThePageWithItsBoxes) {
  Open("<h1>Grüße</h1>" + Print("a", "Wert") + "<p>" + Print("b", "x"));
  EXPECT_EQ(Evaluate("document.querySelector('h1').textContent"), "Grüße");
  EXPECT_EQ(Evaluate("document.querySelectorAll('img[data-kvo]').length"), 2);
  EXPECT_EQ(Evaluate("document.querySelector('img[data-kvo=\"0\"]').alt"),
            "DTCPrint a: print Wert");
  ASSERT_TRUE(WaitFor([&] {
    return Evaluate("[...document.images].every(box => box.complete && box.naturalWidth > 10)")
        .toBool();
  }));
}

TEST_F(DesignViewTest, FollowsTypingWithoutReloading) {
  Open("<!DOCTYPE html><body><p id=eins>alt</p><p>bleibt</p>");
  Evaluate("document.querySelector('p + p').mark = 1; 0");
  QTextCursor cursor = window->Source().textCursor();
  cursor.setPosition(static_cast<int>(window->Page().Content().Text().indexOf("alt")));
  window->Source().setTextCursor(cursor);
  QTest::keyClicks(&window->Source(), "neu &amp; <b>fett</b> ");
  ASSERT_TRUE(WaitForViews(*window));
  EXPECT_EQ(Evaluate("document.querySelector('#eins').innerHTML"), "neu &amp; <b>fett</b> alt");
  EXPECT_EQ(Evaluate("document.querySelector('p + p').mark"), 1);
  EXPECT_EQ(Evaluate("document.compatMode"), "CSS1Compat");
  // Another doctype makes another document.
  window->Source().selectAll();
  QTest::keyClicks(&window->Source(), "<p>x");
  ASSERT_TRUE(WaitForViews(*window));
  EXPECT_EQ(Evaluate("document.compatMode"), "BackCompat");
}

TEST_F(DesignViewTest, ShowsEveryEditLikeABrowser) {
  const std::string steps[] = {"<table><tr><td>a</td></tr></table>",
                               "<table><tr><td>a</td><td>b</td></tr></table>",
                               "<ul><li>1<li>2</ul><style>p{color:red}</style>",
                               "<ul class=x><li>1<li>1a<li>2</ul><!-- c --><p>&lt;",
                               "<svg><circle r=3></svg>",
                               ""};
  Open("<body>");
  for (const std::string& step : steps) {
    window->Source().selectAll();
    window->Source().InsertFragment(step, "Schritt");
    ASSERT_TRUE(WaitForViews(*window));
    EXPECT_EQ(Evaluate("document.documentElement.outerHTML"),
              Evaluate("new DOMParser().parseFromString(" +
                       QString::fromStdString(testing::PrintToString(step)) +
                       ", 'text/html').documentElement.outerHTML"))
        << step;
  }
}

TEST_F(DesignViewTest, ShowsTypingInTablesLikeABrowser) {
  const std::string page =
      "<!DOCTYPE html><table><tr><td>eins</td><td id=x>zwei<table><tr><td>innen</td></tr></table>"
      "</td><td>ohne Ende<td>vier</tr></table><p>hinten <b>fett</b></p>" +
      Print("a", "1");
  const std::string edits[][2] = {
      {"zw", "<b>"},           {"zw", "</td><td>"}, {"innen", "x<i>y</i>"},
      {"eins", "<p><table>"},  {"vier", "&lt;"},    {"ohne", "<script>"},
      {"hint", "<td>"},        {"eins", "<!--"},    {"innen", "</table>"},
      {"eins", "</b>&amp;ö😀"}, {"zwei", "<td"},     {"fett", "</b>"},
  };
  for (const auto& [place, typed] : edits) {
    Open(page);
    QTextCursor cursor = window->Source().textCursor();
    cursor.setPosition(
        static_cast<int>(window->Page().Content().Text().indexOf(QString::fromStdString(place))));
    for (const QChar c : QString::fromStdString(typed)) {
      cursor.insertText(QString(c));
      if (c.isHighSurrogate()) continue;
      ASSERT_TRUE(WaitForViews(*window));
      EXPECT_EQ(Evaluate("document.documentElement.outerHTML"),
                Evaluate("new DOMParser().parseFromString(kvo.text(), 'text/html')"
                         ".documentElement.outerHTML"))
          << place << ' ' << typed;
      EXPECT_EQ(Evaluate("kvo.text()").toString(), window->Analysed()->design);
    }
  }
}

TEST_F(DesignViewTest, IsReachedAndLeftByKeyboardWithoutTypingIntoTheSource) {
  Open("<body><a href=x>eins</a> " + Print("a", "1") + " <input>");
  EXPECT_TRUE(window->Source().hasFocus());  // loading a page does not take the focus
  const std::string before = window->Page().Content().Bytes();
  const auto inDesign = [&] { return window->Design().isAncestorOf(QApplication::focusWidget()); };
  QTest::keyClick(&window->Source(), Qt::Key_F6);
  ASSERT_TRUE(inDesign());
  Evaluate("window.tabs = 0; addEventListener('keydown', e => window.tabs += e.key === 'Tab'); 0");
  for (int tab = 1; tab <= 5; ++tab) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    ASSERT_TRUE(WaitFor([&] { return Evaluate("window.tabs").toInt() == tab; }));
    ASSERT_TRUE(inDesign()) << tab;
  }
  EXPECT_EQ(window->Page().Content().Bytes(), before);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_F6, Qt::ShiftModifier);
  EXPECT_TRUE(window->Source().hasFocus());
  QTest::keyClick(&window->Source(), Qt::Key_F6);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_F6);
  EXPECT_FALSE(inDesign());
  EXPECT_FALSE(window->Source().hasFocus());
}

TEST_F(DesignViewTest, AClickOnABoxSelectsItInTheSourceAndViceVersa) {
  Open("<p>Text</p>" + Print("a", "1") + "<p>" + Print("b", "2"));
  window->Source().SelectControl(window->Page().Content().EmbeddedParts()[0].position);
  EXPECT_TRUE(WaitFor([&] {
    return Evaluate("document.querySelector('.kvo-marked')?.getAttribute('data-kvo')") == "0";
  }));
  const QVariantList place =
      Evaluate(
          "(r => [r.x + r.width / 2, r.y + r.height / 2])"
          "(document.querySelector('img[data-kvo=\"1\"]').getBoundingClientRect())")
          .toList();
  ASSERT_EQ(place.size(), 2);
  QTest::mouseClick(window->Design().View().focusProxy(), Qt::LeftButton, {},
                    QPoint(place[0].toInt(), place[1].toInt()));
  const int second = window->Page().Content().EmbeddedParts()[1].position;
  EXPECT_TRUE(WaitFor([&] { return window->Source().CurrentControl() == second; }));
  EXPECT_TRUE(WaitFor([&] {
    return Evaluate("document.querySelector('.kvo-marked')?.getAttribute('data-kvo')") == "1";
  }));
}

TEST_F(DesignViewTest, NothingRunsAndNothingIsFetched) {
  QTcpServer server;
  ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
  int calls = 0;
  QObject::connect(&server, &QTcpServer::newConnection, [&] { ++calls; });
  const std::string host = "http://127.0.0.1:" + std::to_string(server.serverPort()) + "/";
  Open("<title>ruhig</title><meta http-equiv=refresh content='0;url=" + host +
       "r'>"
       "<script>document.title='lief'</script><script src='" +
       host +
       "s'></script>"
       "<link rel=stylesheet href='" +
       host + "c'><style>@import '" + host +
       "i';"
       "body{background:url(" +
       host +
       "b)}</style>"
       "<img src='" +
       host +
       "p.png' onerror=\"document.title='lief'\">"
       "<iframe src='" +
       host + "f'></iframe><object data='" + host +
       "o'></object>"
       "<embed src='" +
       host + "e'><video src='" + host +
       "v' autoplay></video>"
       "<body onload=\"document.title='lief'\"><form action='" +
       host +
       "a'><button id=k>k</button>"
       "</form><a id=l href='" +
       host +
       "l'>l</a><a id=j href=\"javascript:document.title='lief'\">j"
       "</a>" +
       Print("a", "1"));
  Evaluate("for (const id of ['k', 'l', 'j']) document.getElementById(id).click(); 0");
  QTest::qWait(500);
  EXPECT_EQ(Evaluate("document.title"), "ruhig");
  EXPECT_EQ(Evaluate("document.querySelectorAll('img[data-kvo]').length"), 1);
  EXPECT_EQ(calls, 0);
  // Proves that the server would notice a connection.
  QTcpSocket probe;
  probe.connectToHost(QHostAddress::LocalHost, server.serverPort());
  EXPECT_TRUE(WaitFor([&] { return calls == 1; }));
}

TEST_F(DesignViewTest, PicturesComeOnlyFromThePagesFolder) {
  QImage picture(3, 2, QImage::Format_RGB32);
  picture.fill(Qt::red);
  ASSERT_TRUE(picture.save(desk.Path("rot.png")));
  QTemporaryDir outside;
  ASSERT_TRUE(picture.save(outside.filePath("fremd.png")));
  ASSERT_TRUE(QFile::link(outside.filePath("fremd.png"), desk.Path("link.png")));
  desk.Put("geheim.txt", "geheim");
  Open("<img id=a src=rot.png><img id=b src='../" +
       QFileInfo(outside.path()).fileName().toStdString() +
       "/fremd.png'><img id=c src=link.png>"
       "<img id=d src='file://" +
       desk.Path("rot.png").toStdString() +
       "'>"
       "<iframe id=e src=geheim.txt></iframe>");
  EXPECT_TRUE(WaitFor([&] { return Evaluate("document.getElementById('a').naturalWidth") == 3; }));
  for (const char* id : {"b", "c", "d"})
    EXPECT_EQ(Evaluate(QString("document.getElementById('%1').naturalWidth").arg(id)), 0) << id;
}

}  // namespace
}  // namespace kvo::editor
