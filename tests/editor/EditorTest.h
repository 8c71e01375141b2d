// What the tests of the editor share: the real window on pages in a folder of the test's own.
#pragma once

#include <gtest/gtest.h>

#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <functional>
#include <memory>
#include <string>

#include "apps/editor/DesignView.h"
#include "apps/editor/MainWindow.h"
#include "apps/editor/PropertyBrowser.h"
#include "apps/editor/Toolbox.h"
#include "host/qt/QtPlatform.h"

namespace kvo::editor {

// Where the tests' settings and drafts are: forgotten with it.
class Desk {
 public:
  Desk();

  // A file in the folder.
  QString Put(const QString& name, const std::string& bytes) const;
  std::string Bytes(const QString& name) const;
  QString Path(const QString& name) const { return folder_.filePath(name); }

  QtPlatform platform;
  // Of the windows' shops; none unless a test says so.
  office::ConnectionFactory connections;
  std::unique_ptr<MainWindow> NewWindow();

 private:
  QTemporaryDir folder_;
  PlatformScope scope_;
};

// A print control as an element.
std::string Print(const std::string& id, const std::string& value);

// Waits until something holds; false after ten seconds.
bool WaitFor(const std::function<bool()>& holds);
// Until the analysis and the design view show the page as it is.
bool WaitForViews(MainWindow& window);

// While `during` runs, each modal window that opens is handed to `answer`, which has to close it;
// those that it opens itself, too.
void WithDialogs(const std::function<void(QWidget& dialog)>& answer,
                 const std::function<void()>& during);
// Presses the button with a caption of the modal window.
void PressButton(QWidget& dialog, const QString& caption);

}  // namespace kvo::editor
