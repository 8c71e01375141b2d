// The window's menus, and the actions that no other part implements.
#include <QApplication>
#include <QDir>
#include <QDockWidget>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenuBar>
#include <QSettings>
#include <QSplitter>
#include <QStatusBar>

#include "apps/editor/DesignView.h"
#include "apps/editor/FindBar.h"
#include "apps/editor/MainWindow.h"
#include "apps/editor/Panels.h"
#include "apps/editor/PropertyBrowser.h"
#include "apps/editor/Toolbox.h"
#include "apps/editor/Words.h"
#include "document/page/File.h"
#include "host/qt/Messages.h"

namespace kvo::editor {
namespace {

constexpr char kToolbox[] = "toolbox";
constexpr char kToolboxName[] = "toolbox.json";

// Returns the contents of a template's title element.
QString PageTitle(const QByteArray& page) {
  constexpr QByteArrayView kStart = "<title>";
  const qsizetype begin = page.indexOf(kStart) + kStart.size();
  return QString::fromUtf8(page.mid(begin, page.indexOf("</title>", begin) - begin));
}

}  // namespace

QAction* MainWindow::Action(QMenu& menu, const Localized& text, const QKeySequence& keys,
                            std::function<void()> run) {
  QAction* action = menu.addAction(Text(text));
  action->setShortcut(keys);
  connect(action, &QAction::triggered, this, std::move(run));
  return action;
}

void MainWindow::MakeMenus() {
  MakeFileMenu();
  MakeEditMenu();
  MakeControlMenu();
  MakeViewMenu();
}

void MainWindow::MakeFileMenu() {
  QMenu& menu = *menuBar()->addMenu(Text(words::kFileMenu));
  const auto choose = [this](const Localized& title, const QString& filter) {
    return QFileDialog::getOpenFileName(this, Text(title), session_->File().Folder(), filter);
  };
  const QString json = "JSON (*.json)";
  Action(menu, words::kNew, QKeySequence::New, [this] { session_->New(); });
  AddTemplates(*menu.addMenu(Text(words::kNewFromTemplate)));
  Action(menu, words::kOpen, QKeySequence::Open, [this, choose] {
    const QString file = choose(words::kOpenTitle, Text(words::kPageFiles));
    if (!file.isEmpty()) session_->Open(file);
  });
  recent_ = menu.addMenu(Text(words::kRecent));
  connect(recent_, &QMenu::aboutToShow, this, [this] { ShowRecent(); });
  menu.addSeparator();
  Action(menu, words::kSaveAction, QKeySequence::Save, [this] { session_->Save(); });
  Action(menu, words::kSaveAs, QKeySequence("Ctrl+Shift+S"), [this] { session_->SaveAs({}); });
  Action(menu, words::kPublish, QKeySequence("Ctrl+Shift+P"), [this] { session_->Publish({}); });
  menu.addSeparator();
  Action(menu, words::kChooseOffice, {}, [this, choose, json] {
    const QString file = choose(words::kOfficeTitle, json);
    if (!file.isEmpty()) session_->ChooseOffice(file);
  });
  Action(menu, words::kChooseToolbox, {}, [this, choose, json] {
    const QString file = choose(words::kToolboxTitle, json);
    if (!file.isEmpty() && UseToolbox(file)) QSettings().setValue(kToolbox, file);
  });
  Action(menu, words::kBuiltInToolbox, {}, [this] {
    QSettings().remove(kToolbox);
    UseToolbox({});
  });
  menu.addSeparator();
  Action(menu, words::kQuit, QKeySequence("Ctrl+Q"), [this] { close(); });
}

void MainWindow::MakeEditMenu() {
  QMenu& menu = *menuBar()->addMenu(Text(words::kEditMenu));
  undo_ = Action(menu, words::kUndo, QKeySequence::Undo, [this] { Page().Undo(); });
  redo_ = Action(menu, words::kRedo, QKeySequence::Redo, [this] { Page().Redo(); });
  menu.addSeparator();
  Action(menu, words::kCut, QKeySequence::Cut, [this] {
    const PageDocument::Step step(Page(), Text(words::kCutStep));
    source_->cut();
  });
  Action(menu, words::kCopy, QKeySequence::Copy, [this] { source_->copy(); });
  Action(menu, words::kPaste, QKeySequence::Paste, [this] { source_->paste(); });
  Action(menu, words::kSelectAll, QKeySequence::SelectAll, [this] { source_->selectAll(); });
  menu.addSeparator();
  source_->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(source_, &QWidget::customContextMenuRequested, this, [this, &menu](const QPoint& point) {
    QMenu context;
    context.addAction(openPages_);
    context.addSeparator();
    context.addActions(menu.actions());
    context.exec(source_->viewport()->mapToGlobal(point));
  });
  Action(menu, words::kFindAction, QKeySequence::Find, [this] { find_->Open(false); });
  Action(menu, words::kReplaceAction, QKeySequence("Ctrl+H"), [this] { find_->Open(true); });
  Action(menu, words::kFindNext, QKeySequence("F3"), [this] { find_->Step(false); });
  Action(menu, words::kFindPrevious, QKeySequence("Shift+F3"), [this] { find_->Step(true); });
}

void MainWindow::MakeControlMenu() {
  QMenu& menu = *menuBar()->addMenu(Text(words::kControlMenu));
  openPages_ = Action(menu, words::kOpenPages, QKeySequence("Alt+Return"), [this] {
    if (const auto control = source_->CurrentControl()) controls_->OpenPages(*control, false);
  });
  Action(menu, words::kNextControl, QKeySequence("F4"), [this] { StepControl(false); });
  Action(menu, words::kPreviousControl, QKeySequence("Shift+F4"), [this] { StepControl(true); });
  menu.addSeparator();
  Action(menu, words::kInsertControl, QKeySequence("Ctrl+T"), [this] {
    toolbox_->ForgetSearch();
    ShowPanel(*toolbox_);
  });
  Action(menu, words::kRecognize, {}, [this] { session_->RecognizeControls(); });
  Action(menu, words::kWriteTexts, {}, [this] { session_->WriteRuntimeTexts(); });
}

void MainWindow::MakeViewMenu() {
  QMenu& menu = *menuBar()->addMenu(Text(words::kViewMenu));
  const auto toggle = [&menu](const Localized& text, const char* keys, QWidget* side) {
    QAction* action = menu.addAction(Text(text));
    action->setShortcut(QKeySequence(keys));
    action->setCheckable(true);
    action->setChecked(true);
    connect(action, &QAction::toggled, side, &QWidget::setVisible);
  };
  toggle(words::kSource, "Ctrl+1", splitter_->widget(0));
  toggle(words::kDesign, "Ctrl+2", splitter_->widget(1));
  menu.addSeparator();
  int number = 3;
  for (const Panel& panel : panels_) {
    if (panel.dock == nullptr) continue;
    QAction* action = menu.addAction(panel.dock->windowTitle());
    action->setShortcut(QKeySequence("Ctrl+" + QString::number(number++)));
    action->setCheckable(true);
    connect(action, &QAction::triggered, this, [this, panel, action] {
      // Brings a panel behind another one to the front.
      if (action->isChecked())
        ShowPanel(*panel.widget);
      else
        panel.dock->hide();
    });
    connect(panel.dock, &QDockWidget::visibilityChanged, this, [this, action](bool shows) {
      action->setChecked(shows);
      if (analysis_ && output_->isVisible()) output_->Show(analysis_->output);
    });
  }
  menu.addSeparator();
  Action(menu, words::kNextPanel, QKeySequence("F6"), [this] { NextPanel(false); });
  Action(menu, words::kPreviousPanel, QKeySequence("Shift+F6"), [this] { NextPanel(true); });
}

void MainWindow::ShowPanel(QWidget& panel) {
  panel.parentWidget()->show();
  panel.parentWidget()->raise();
  panel.setFocus();
}

void MainWindow::NextPanel(bool backwards) {
  std::vector<QWidget*> stops;
  for (const Panel& panel : panels_)
    if (panel.widget->isVisible() && panel.widget->isEnabled()) stops.push_back(panel.widget);
  if (stops.empty()) return;
  if (backwards) std::ranges::reverse(stops);
  const QWidget* focused = QApplication::focusWidget();
  auto now = std::ranges::find_if(stops, [focused](QWidget* stop) {
    return focused != nullptr && (stop == focused || stop->isAncestorOf(focused));
  });
  if (now != stops.end()) ++now;
  (now == stops.end() ? stops.front() : *now)->setFocus(Qt::TabFocusReason);
}

void MainWindow::StepControl(bool backwards) {
  const auto& parts = Page().Content().EmbeddedParts();
  const QTextCursor cursor = source_->textCursor();
  std::optional<int> next;
  for (const Embedded& part : parts) {
    if (part.kind != Embedded::Kind::control) continue;
    if (backwards) {
      if (part.position < cursor.selectionStart()) next = part.position;
    } else if (part.position >= cursor.selectionEnd()) {
      next = part.position;
      break;
    }
  }
  if (next) source_->GoTo(*next);
}

void MainWindow::AddTemplates(QMenu& menu) {
  for (const QFileInfo& each : QDir(":/editor/templates").entryInfoList()) {
    QFile file(each.filePath());
    if (!file.open(QIODevice::ReadOnly)) continue;
    const QByteArray page = file.readAll();
    Action(menu, {}, {}, [this, page] {
      session_->NewFrom(page.toStdString());
    })->setText(PageTitle(page).replace('&', "&&"));
  }
}

void MainWindow::ShowRecent() {
  recent_->clear();
  const QStringList files = Session::RecentFiles();
  for (const QString& file : files) {
    QString shown = file;
    Action(*recent_, {}, {}, [this, file] {
      session_->Open(file);
    })->setText(shown.replace('&', "&&"));
  }
  recent_->setEnabled(true);
  if (files.isEmpty()) recent_->addAction(Text(words::kNothingRecent))->setEnabled(false);
}

bool MainWindow::UseToolbox(const QString& file) {
  return Guarded([&] {
    toolbox_->Tools(file.isEmpty() ? BuiltInTools(session_->Office()->Described())
                                   : ReadToolbox(page::ReadFile(FileName(file)), FileName(file)));
    builtInTools_ = file.isEmpty();
    return true;
  });
}

void MainWindow::FolderChanged() {
  QString toolbox = session_->File().Companion(kToolboxName);
  if (toolbox.isEmpty()) toolbox = QSettings().value(kToolbox).toString();
  if (!QFileInfo::exists(toolbox)) toolbox.clear();
  if (!UseToolbox(toolbox)) UseToolbox({});
}

}  // namespace kvo::editor
