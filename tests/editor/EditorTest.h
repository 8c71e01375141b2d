// Shared by the tests of the editor: opens the real window for pages in a temporary folder.
#pragma once

#include <gtest/gtest.h>

#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QVariant>
#include <functional>
#include <memory>
#include <string>

#include "apps/editor/DesignView.h"
#include "apps/editor/MainWindow.h"
#include "apps/editor/PropertyBrowser.h"
#include "apps/editor/Toolbox.h"
#include "host/qt/QtPlatform.h"

class QWebEnginePage;

namespace kvo::editor {

// Holds the tests' settings and drafts, and deletes them on destruction.
class Desk {
 public:
  Desk();

  // Writes a file in the folder and returns its path.
  QString Put(const QString& name, const std::string& bytes) const;
  std::string Bytes(const QString& name) const;
  QString Path(const QString& name) const { return folder_.filePath(name); }

  QtPlatform platform;
  // Opens the windows' shops; none by default.
  office::ConnectionFactory connections;
  std::unique_ptr<MainWindow> NewWindow();

 private:
  QTemporaryDir folder_;
  PlatformScope scope_;
};

// Returns a print control's element.
std::string Print(const std::string& id, const std::string& value);

// Waits until `holds` returns true; returns false after ten seconds.
bool WaitFor(const std::function<bool()>& holds);
// Waits until the analysis and the design view show the current page.
bool WaitForViews(MainWindow& window);
// Returns the value that a JavaScript expression has in the world of our own scripts.
QVariant ValueIn(QWebEnginePage& page, const QString& expression);

// While `during` runs, passes each modal window that opens to `answer`, which must close it.
// Includes windows that `answer` itself opens.
void WithDialogs(const std::function<void(QWidget& dialog)>& answer,
                 const std::function<void()>& during);
// Double-clicks. Unlike QTest::mouseDClick(), releases the button at the end.
void DoubleClick(QWidget& widget, const QPoint& point);
// Presses the button with this caption in the modal window.
void PressButton(QWidget& dialog, const QString& caption);

}  // namespace kvo::editor
