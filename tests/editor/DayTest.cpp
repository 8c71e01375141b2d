// An author's day with the keyboard only: a new page, all controls, all their pages, undoing and
// redoing everything, saving and reopening.
#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTabWidget>

#include "host/qt/PropertyFrameDialog.h"
#include "tests/editor/EditorTest.h"

namespace kvo::editor {
namespace {

constexpr char kGolden[] = KVO_SOURCE_DIR "/tests/golden/editor/day.html";

// A user with nothing but a keyboard.
class Author {
 public:
  void Press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    if (QWidget* focused = FocusedWidget())
      QTest::keyClick(focused, static_cast<Qt::Key>(key), modifiers);
  }
  void Type(const QString& text) {
    for (const QChar c : text) {
      if (c == u'\n')
        Press(Qt::Key_Return);
      else if (QWidget* focused = FocusedWidget())
        QTest::sendKeyEvent(QTest::Click, focused, Qt::Key_unknown, QString(c), Qt::NoModifier);
    }
  }
  QWidget* FocusedWidget() {
    if (QApplication::focusWidget() == nullptr) {
      // The tests' desktop does not activate the window below a closed dialog.
      QWidget* dialog = QApplication::activeModalWidget();
      QWidget& top = dialog != nullptr ? *dialog : *window;
      top.activateWindow();
      EXPECT_TRUE(QTest::qWaitForWindowActive(&top));
    }
    if (QApplication::focusWidget() == nullptr) ADD_FAILURE() << "nothing has the focus";
    return QApplication::focusWidget();
  }
  QWidget* window = nullptr;  // the one below all dialogs
  static QString Focused() {
    const QWidget* focused = QApplication::focusWidget();
    return focused == nullptr ? QString() : focused->objectName();
  }
  // Presses Tab until an input has the focus.
  void TabTo(const QString& name) {
    for (int press = 0; press < 60 && Focused() != name; ++press) Press(Qt::Key_Tab);
    EXPECT_EQ(Focused().toStdString(), name.toStdString());
  }
  void Replace(const QString& name, const QString& text) {
    TabTo(name);
    Press(Qt::Key_A, Qt::ControlModifier);
    Type(text);
  }
};

using PageEdit = std::function<void(Author&)>;

// The author's edits with a tool: its name in the toolbox, and the edit on each page of its
// control.
struct Visit {
  QString tool;
  std::vector<PageEdit> pages;
};

PageEdit Fill(const QString& name, const QString& text) {
  return [=](Author& author) { author.Replace(name, text); };
}

// Chooses the list's next row.
PageEdit ChooseNext(const QString& name) {
  return [=](Author& author) {
    author.TabTo(name);
    author.Press(Qt::Key_Down);
  };
}

std::vector<Visit> Day() {
  const PageEdit attribute = [](Author& author) {
    // VisitPages() answers the prompt for the name.
    author.TabTo("cmdNew");
    author.Press(Qt::Key_Space);
  };
  const PageEdit listDesign = [](Author& author) { author.Press(Qt::Key_Tab); };
  return {
      {"Ausdruck", {Fill("txtValue", "#order.total# & mehr"), ChooseNext("cboFormat")}},
      {"Kontaktfeld", {ChooseNext("cboContactFields"), ChooseNext("cboFormat")}},
      {"Bestellfeld", {ChooseNext("cboOrderFields"), ChooseNext("cboFormat")}},
      {"Konfigurationswert", {}},
      {"HTML-Element", {Fill("txtElementBasename", "td"), attribute}},
      {"Skript", {}},
      {"Wenn/sonst", {[](Author& author) {
         author.Replace("txtTestCondition", "#customer.Age# > 17");
         author.Replace("txtOnTrueContent", "<b>ja</b>\nzweite Zeile");
       }}},
      {"Produkttabelle",
       {[](Author& author) {
          author.Replace("txtTableWidth", "480");
          author.Replace("txtHeadline", "Angebote");
        },
        listDesign, PageEdit()}},
      {"Bestellpositionen", {listDesign}},
      {"Gezählter Link", {[](Author& author) {
         author.Replace("txtHref", "https://shop.example/?a=1&b=2");
         author.Replace("txtHTMLContent", "hier");
       }}},
      {"Öffnungszähler", {}},
      {"Abmeldelink", {[](Author& author) {
         author.Replace("txtRecipient", "shop@shop.example");
         author.Replace("txtSite", "https://shop.example/ade/");
         author.Replace("txtHTMLContent", "Abmelden");
       }}},
  };
}

class DayTest : public testing::Test {
 protected:
  DayTest() : window(desk.NewWindow()) {
    // The new page's folder, with an office.
    desk.Put("office.json",
             R"({"contactFields":[{"sqlName":"City","displayName":"Ort","dataType":0},
                                  {"sqlName":"Age","displayName":"Alter","dataType":1}],
                 "orderFields":[{"sqlName":"OrderID","displayName":"Nummer","dataType":1}]})");
    EXPECT_TRUE(window->Work().UseOffice(desk.Path("office.json")));
    author.window = window.get();
    window->Source().setFocus();
  }

  std::string Bytes() const { return window->Page().Content().Bytes(); }

  // Visits the pages of the control that was just inserted, and ends with OK.
  void VisitPages(const Visit& visit) {
    std::size_t shown = 0;
    WithDialogs(
        [&](QWidget& dialog) {
          if (qobject_cast<QInputDialog*>(&dialog) != nullptr) {
            author.Type("class");
            return author.Press(Qt::Key_Return);
          }
          auto* frame = dynamic_cast<PropertyFrameDialog*>(&dialog);
          if (frame == nullptr) {
            const auto* box = qobject_cast<QMessageBox*>(&dialog);
            ADD_FAILURE() << visit.tool.toStdString() << ": "
                          << (box ? box->text().toStdString() : "an unexpected dialog");
            return dialog.close(), void();
          }
          for (const PageEdit& edit : visit.pages) {
            if (shown++ > 0) author.Press(Qt::Key_Tab, Qt::ControlModifier);
            if (edit) edit(author);
          }
          EXPECT_EQ(frame->Frame().PageCount(), visit.pages.size());
          author.TabTo("cmdOk");
          author.Press(Qt::Key_Space);
        },
        [&] { author.Press(Qt::Key_Return); });
    EXPECT_EQ(shown, visit.pages.size()) << visit.tool.toStdString();
  }

  // Answers the file dialog opened by a menu action.
  void WithFile(const QString& name, int key, Qt::KeyboardModifiers modifiers) {
    WithDialogs(
        [&](QWidget& dialog) {
          ASSERT_NE(qobject_cast<QFileDialog*>(&dialog), nullptr);
          author.Press(Qt::Key_A, Qt::ControlModifier);
          author.Type(desk.Path(name));
          author.Press(Qt::Key_Return);
        },
        [&] { author.Press(key, modifiers); });
  }

  Author author;
  Desk desk;
  std::unique_ptr<MainWindow> window;
};

TEST_F(DayTest, EndsInTheGoldenPage) {
  QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
  author.Press(Qt::Key_N, Qt::ControlModifier);
  const std::string fresh = Bytes();
  author.Press(Qt::Key_A, Qt::ControlModifier);
  author.Type("<h1>Guten Tag</h1>\n");
  int steps = 0;
  for (const Visit& visit : Day()) {
    SCOPED_TRACE(visit.tool.toStdString());
    author.Press(Qt::Key_T, Qt::ControlModifier);
    author.Type(visit.tool);
    author.Press(Qt::Key_Return);
    ASSERT_TRUE(window->Source().hasFocus());
    EXPECT_EQ(window->Page().UndoName(), visit.tool + " einfügen");
    if (!visit.pages.empty()) VisitPages(visit);
    author.Type("\n");
  }
  const std::string finished = Bytes();
  while (!window->Page().UndoName().isEmpty()) {
    author.Press(Qt::Key_Z, Qt::ControlModifier);
    ++steps;
    ASSERT_LT(steps, 1000);
  }
  EXPECT_GT(steps, 20);
  EXPECT_EQ(Bytes(), fresh);
  for (; steps > 0; --steps) author.Press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(window->Page().RedoName(), "");
  EXPECT_EQ(Bytes(), finished);

  WithFile("tag.html", Qt::Key_S, Qt::ControlModifier);
  EXPECT_FALSE(window->isWindowModified());
  const std::string saved = desk.Bytes("tag.html");
  EXPECT_EQ(saved, Bytes());
  QFile golden(kGolden);
  ASSERT_TRUE(golden.open(QIODevice::ReadOnly)) << kGolden;
  const std::string expected = golden.readAll().toStdString();
  if (saved != expected) {
    QFile actual(KVO_BINARY_DIR "/day.html");
    ASSERT_TRUE(actual.open(QIODevice::WriteOnly));
    actual.write(QByteArray::fromStdString(saved));
  }
  EXPECT_EQ(saved, expected) << "compare with " KVO_BINARY_DIR "/day.html";

  author.Press(Qt::Key_N, Qt::ControlModifier);
  EXPECT_NE(Bytes(), saved);
  WithFile("tag.html", Qt::Key_O, Qt::ControlModifier);
  EXPECT_EQ(Bytes(), saved);
  EXPECT_TRUE(WaitForViews(*window));
  EXPECT_EQ(window->Analysed()->outline.size(), 12U);
  for (const ProblemEntry& entry : window->Analysed()->problems)
    EXPECT_EQ(entry.problem.severity, page::Severity::warning) << entry.problem.message.english;
}

}  // namespace
}  // namespace kvo::editor
