#include "tests/editor/EditorTest.h"

#include <QAbstractButton>
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>
#include <QWebEnginePage>
#include <QWebEngineScript>
#include <optional>

#include "host/registration/classes.h"

// The browser frees some objects with the size of their base class.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() { return "new_delete_type_mismatch=0"; }
// Ignores memory that the browser and the font library never free.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libQt6WebEngineCore\nleak:libfontconfig\n";
}

namespace kvo::editor {

Desk::Desk() : platform(CreatePage), scope_(platform) {
  QSettings::setDefaultFormat(QSettings::IniFormat);
  QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, folder_.path());
  ControlEditing::OpensInserted(false);
}

QString Desk::Put(const QString& name, const std::string& bytes) const {
  QFile file(Path(name));
  if (!file.open(QIODevice::WriteOnly) ||
      file.write(bytes.data(), static_cast<qint64>(bytes.size())) !=
          static_cast<qint64>(bytes.size()))
    ADD_FAILURE() << "cannot write " << name.toStdString();
  return Path(name);
}

std::string Desk::Bytes(const QString& name) const {
  QFile file(Path(name));
  EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
  return file.readAll().toStdString();
}

std::unique_ptr<MainWindow> Desk::NewWindow() {
  auto window =
      std::make_unique<MainWindow>(platform, Session::Places{Path("drafts"), connections});
  window->show();
  window->activateWindow();
  EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
  return window;
}

std::string Print(const std::string& id, const std::string& value) {
  return "<object classid=\"progid:KVOPDesignObjects.DTCPrint\" id=\"" + id +
         "\"><param name=\"value\" value=\"" + value + "\"></object>";
}

bool WaitFor(const std::function<bool()>& holds) {
  QElapsedTimer timer;
  timer.start();
  while (!holds()) {
    if (timer.elapsed() > 10000) return false;
    QTest::qWait(10);
  }
  return true;
}

bool WaitForViews(MainWindow& window) {
  return WaitFor([&] {
    return window.Analysed() != nullptr &&
           window.Analysed()->revision == window.Page().Revision() &&
           window.Design().ShownRevision() == window.Page().Revision();
  });
}

QVariant ValueIn(QWebEnginePage& page, const QString& expression) {
  std::optional<QVariant> answer;
  page.runJavaScript(expression, QWebEngineScript::ApplicationWorld,
                     [&](const QVariant& value) { answer = value; });
  EXPECT_TRUE(WaitFor([&] { return answer.has_value(); })) << expression.toStdString();
  return answer.value_or(QVariant());
}

void WithDialogs(const std::function<void(QWidget&)>& answer, const std::function<void()>& during) {
  QObject end;
  QList<QPointer<QWidget>> answered;
  // Makes a new timer each time: an answer may open the next dialog, and a timer does not fire
  // again during its own event.
  std::function<void()> look = [&] {
    QTimer::singleShot(20, &end, look);
    QWidget* dialog = QApplication::activeModalWidget();
    if (dialog == nullptr || answered.contains(dialog) || !dialog->isActiveWindow()) return;
    answered.append(dialog);
    answer(*dialog);
  };
  look();
  during();
}

void DoubleClick(QWidget& widget, const QPoint& point) {
  QTest::mouseClick(&widget, Qt::LeftButton, {}, point);
  QTest::mouseDClick(&widget, Qt::LeftButton, {}, point);
  QTest::mouseRelease(&widget, Qt::LeftButton, {}, point);
}

void PressButton(QWidget& dialog, const QString& caption) {
  for (QAbstractButton* button : dialog.findChildren<QAbstractButton*>())
    if (button->text().remove('&') == caption) return button->click();
  ADD_FAILURE() << "there is no button \"" << caption.toStdString() << '"';
  dialog.close();
}

}  // namespace kvo::editor
