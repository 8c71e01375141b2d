// The window's menus, and the actions that no other part implements.
#include <QActionGroup>
#include <QApplication>
#include <QColorDialog>
#include <QDir>
#include <QDockWidget>
#include <QFileDialog>
#include <QFileInfo>
#include <QImageReader>
#include <QInputDialog>
#include <QMenuBar>
#include <QSettings>
#include <QUrl>
#include <map>

#include "apps/editor/DesignFrame.h"
#include "apps/editor/DesignView.h"
#include "apps/editor/FindBar.h"
#include "apps/editor/MainWindow.h"
#include "apps/editor/Mending.h"
#include "apps/editor/Panels.h"
#include "apps/editor/PreviewPanel.h"
#include "apps/editor/PropertyBrowser.h"
#include "apps/editor/TakeOver.h"
#include "apps/editor/Templates.h"
#include "apps/editor/ToolBar.h"
#include "apps/editor/Toolbox.h"
#include "apps/editor/Views.h"
#include "apps/editor/WhereUsed.h"
#include "apps/editor/Words.h"
#include "document/page/File.h"
#include "host/qt/Messages.h"

namespace kvo::editor {
namespace {

constexpr char kToolbox[] = "toolbox";
constexpr char kToolboxName[] = "toolbox.json";
constexpr char kWrap[] = "wrap";

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
  MakeFormatMenu();
  MakeControlMenu();
  MakeViewMenu();
  for (const QAction* menu : menuBar()->actions().mid(1))  // all but the file menu
    for (QAction* action : menu->menu()->actions()) pageActions_.push_back(action);
}

void MainWindow::MakeFileMenu() {
  QMenu& menu = *menuBar()->addMenu(Text(words::kFileMenu));
  const auto choose = [this](const Localized& title, const QString& filter) {
    return QFileDialog::getOpenFileName(this, Text(title), session_->File().Folder(), filter);
  };
  const QString json = "JSON (*.json)";
  toolBar_->Add(ToolBar::files,
                *Action(menu, words::kNew, QKeySequence::New, [this] { session_->New(); }), "new");
  AddTemplates(*menu.addMenu(Text(words::kNewFromTemplate)));
  QAction* open = Action(menu, words::kOpen, QKeySequence::Open, [this] { ChooseAndOpen(); });
  toolBar_->Add(ToolBar::files, *open, "open");
  recent_ = menu.addMenu(Text(words::kRecent));
  connect(recent_, &QMenu::aboutToShow, this, [this] { ShowRecent(); });
  menu.addSeparator();
  QAction* save =
      Action(menu, words::kSaveAction, QKeySequence::Save, [this] { session_->Save(); });
  toolBar_->Add(ToolBar::files, *save, "save");
  QAction* saveAs =
      Action(menu, words::kSaveAs, QKeySequence("Ctrl+Shift+S"), [this] { session_->SaveAs({}); });
  QAction* publish = Action(menu, words::kPublish, QKeySequence("Ctrl+Shift+P"),
                            [this] { session_->Publish({}); });
  toolBar_->Add(ToolBar::publishing, *publish, "publish", ToolBar::Caption::shown);
  QAction* takeOver = Action(menu, words::kTakeOverAction, {}, [this] { TakeOver(); });
  pageActions_ = {save, saveAs, publish, takeOver};
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

void MainWindow::TakeOver() {
  TakeOverDialog dialog(Page().Content(), session_->Office(), session_->File().Folder(), this);
  if (dialog.exec() != QDialog::Accepted) return;
  if (const auto page = dialog.Result()) Page().ReplaceAll(*page, Text(words::kTakeOver));
}

void MainWindow::MakeEditMenu() {
  QMenu& menu = *menuBar()->addMenu(Text(words::kEditMenu));
  // Performs an edit in the view of the page that was used last.
  const auto inView = [this](const char* command, const std::function<void()>& inSource) {
    return [this, command, inSource] {
      if (editing_->IsActive())
        design_->Perform(command);
      else
        inSource();
    };
  };
  undo_ = Action(menu, words::kUndo, QKeySequence::Undo, inView("undo", [this] { Page().Undo(); }));
  redo_ = Action(menu, words::kRedo, QKeySequence::Redo, inView("redo", [this] { Page().Redo(); }));
  toolBar_->Add(ToolBar::steps, *undo_, "undo");
  toolBar_->Add(ToolBar::steps, *redo_, "redo");
  menu.addSeparator();
  Action(menu, words::kCut, QKeySequence::Cut, inView("cut", [this] {
           const PageDocument::Step step(Page(), Text(words::kCutStep));
           source_->cut();
         }));
  Action(menu, words::kCopy, QKeySequence::Copy, inView("copy", [this] { source_->copy(); }));
  Action(menu, words::kPaste, QKeySequence::Paste, inView("paste", [this] { source_->paste(); }));
  Action(menu, words::kSelectAll, QKeySequence::SelectAll, [this] {
    if (editing_->IsActive())
      design_->SelectAll();
    else
      source_->selectAll();
  });
  menu.addSeparator();
  source_->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(source_, &QWidget::customContextMenuRequested, this, [this, &menu](const QPoint& point) {
    QMenu context;
    context.addAction(openPages_);
    context.addAction(whereUsed_);
    context.addSeparator();
    context.addActions(menu.actions());
    context.exec(source_->viewport()->mapToGlobal(point));
  });
  const auto find = [&](const Localized& text, const QKeySequence& keys, auto run) {
    Action(menu, text, keys, [this, run] {
      NeedSource();
      run(*find_);
    });
  };
  find(words::kFindAction, QKeySequence::Find, [](FindBar& bar) { bar.Open(false); });
  find(words::kReplaceAction, QKeySequence("Ctrl+H"), [](FindBar& bar) { bar.Open(true); });
  find(words::kFindNext, QKeySequence("F3"), [](FindBar& bar) { bar.Step(false); });
  find(words::kFindPrevious, QKeySequence("Shift+F3"), [](FindBar& bar) { bar.Step(true); });
}

// What is done to the selection of the design view.
void MainWindow::MakeFormatMenu() {
  QMenu& menu = *menuBar()->addMenu(Text(words::kFormatMenu));
  const auto format = [this, &menu](const Localized& text, const char* keys, const char* command,
                                    const QString& value = {}) {
    return Action(menu, text, QKeySequence(keys),
                  [this, command, value] { design_->Perform(command, value); });
  };
  const auto toggle = [&](const Localized& text, const char* keys, const char* command) {
    QAction* action = format(text, keys, command);
    action->setCheckable(true);
    formats_[command] = action;
  };
  toggle(words::kBold, "Ctrl+B", "bold");
  toggle(words::kItalic, "Ctrl+I", "italic");
  toggle(words::kUnderline, "Ctrl+U", "underline");
  menu.addSeparator();
  formats_["link"] =
      Action(menu, words::kLinkAction, QKeySequence("Ctrl+K"), [this] { EditLink(); });
  formats_["color"] = Action(menu, words::kTextColorAction, {}, [this] {
    const QColor color = QColorDialog::getColor(Qt::black, this, Text(words::kTextColor));
    if (color.isValid()) design_->Perform("color", color.name());
  });
  formats_["picture"] = Action(menu, words::kPictureAction, QKeySequence("Ctrl+Shift+I"),
                               [this] { InsertPicture(); });
  menu.addSeparator();
  format(words::kParagraph, "Ctrl+Alt+0", "block", "p");
  for (const QString level : {"1", "2", "3"}) {
    QAction* action = format(words::kParagraph, "", "block", "h" + level);
    action->setText(Text(words::kHeading, {level}));
    action->setShortcut(QKeySequence("Ctrl+Alt+" + level));
    formats_["h" + level] = action;
  }
  formats_["ul"] = format(words::kBulletList, "Ctrl+Shift+8", "ul");
  const std::pair<const char*, const char*> buttons[] = {
      {"bold", "bold"}, {"italic", "italic"}, {"underline", "underline"}, {"h2", "heading"},
      {"ul", "list"},   {"color", "colour"},  {"link", "link"},           {"picture", "picture"},
  };
  for (const auto& [command, icon] : buttons)
    toolBar_->Add(ToolBar::formats, *formats_.value(command), icon);
  format(words::kNumberedList, "Ctrl+Shift+7", "ol");
  menu.addSeparator();
  Action(menu, words::kShowInSource, QKeySequence("Ctrl+J"), [this] {
    NeedSource();
    source_->GoTo(source_->textCursor().position());
  });
}

void MainWindow::EditLink() {
  bool chosen = false;
  const QString address =
      QInputDialog::getText(this, Text(words::kLink), Text(words::kLinkAddress), QLineEdit::Normal,
                            link_.value_or("https://"), &chosen);
  if (chosen && address != "https://") design_->Perform("link", address.trimmed());
}

void MainWindow::InsertPicture() {
  const QString folder = session_->File().Folder();
  if (folder.isEmpty()) return Tell(Text(words::kPictureUnsaved));
  const QString file =
      QFileDialog::getOpenFileName(this, Text(words::kPicture), folder, Text(words::kPictureFiles));
  if (file.isEmpty()) return;
  const QString path = QDir(folder).relativeFilePath(file);
  if (path.startsWith("..") || QDir::isAbsolutePath(path))
    return Tell(Text(words::kPictureOutside, {file}));
  bool chosen = false;
  const QString words = QInputDialog::getText(this, Text(words::kPicture), Text(words::kAltText),
                                              QLineEdit::Normal, {}, &chosen);
  if (!chosen) return;
  const auto value = [](const QString& text) {
    return QString::fromStdU16String(design::WriteValue(text.toStdU16String()));
  };
  const QString url = QString::fromUtf8(QUrl::toPercentEncoding(path, "/"));
  QString size;
  if (const QSize pixels = QImageReader(file).size(); pixels.isValid())
    size = QString(" width=\"%1\" height=\"%2\"").arg(pixels.width()).arg(pixels.height());
  design_->Perform("picture", "<img src=\"" + value(url) + "\" alt=\"" + value(words) + '"' + size +
                                  " border=\"0\">");
}

void MainWindow::MakeControlMenu() {
  QMenu& menu = *menuBar()->addMenu(Text(words::kControlMenu));
  openPages_ = Action(menu, words::kOpenPages, QKeySequence("Alt+Return"), [this] {
    if (const auto control = source_->CurrentControl()) controls_->OpenPages(*control, false);
  });
  Action(menu, words::kNextControl, QKeySequence("F4"), [this] { StepControl(false); });
  Action(menu, words::kPreviousControl, QKeySequence("Shift+F4"), [this] { StepControl(true); });
  whereUsed_ =
      Action(menu, words::kWhereUsed, QKeySequence("Ctrl+Shift+F"), [this] { uses_->Ask(); });
  menu.addSeparator();
  const auto step = [this](bool backwards) {
    if (!editing_->IsInUse()) NeedSource();
    mending_->Step(backwards);
  };
  Action(menu, words::kNextProblem, QKeySequence("F8"), [step] { step(false); });
  Action(menu, words::kPreviousProblem, QKeySequence("Shift+F8"), [step] { step(true); });
  Action(menu, words::kFixProblem, QKeySequence("Ctrl+."), [this] { mending_->Fix(); });
  menu.addSeparator();
  QAction* insert = Action(menu, words::kInsertControl, QKeySequence("Ctrl+T"), [this] {
    toolbox_->ForgetSearch();
    ShowPanel(*toolbox_);
  });
  toolBar_->Add(ToolBar::controls, *insert, "insert", ToolBar::Caption::shown);
  QAction* opens = Action(menu, words::kOpensInserted, {}, [] {});
  opens->setCheckable(true);
  opens->setChecked(ControlEditing::OpensInserted());
  connect(opens, &QAction::toggled, this, [](bool on) { ControlEditing::OpensInserted(on); });
  Action(menu, words::kRecognize, {}, [this] { session_->RecognizeControls(); });
  Action(menu, words::kWriteTexts, {}, [this] { session_->WriteRuntimeTexts(); });
}

void MainWindow::MakeViewMenu() {
  QMenu& menu = *menuBar()->addMenu(Text(words::kViewMenu));
  AddLayouts(menu);
  AddPreview(menu);
  menu.addSeparator();
  AddWidths(menu);
  menu.addSeparator();
  QAction* wrap = menu.addAction(Text(words::kWrap));
  wrap->setCheckable(true);
  wrap->setChecked(true);
  connect(wrap, &QAction::toggled, this, [this](bool wraps) {
    source_->Wrap(wraps);
    QSettings().setValue(kWrap, wraps);
  });
  wrap->setChecked(QSettings().value(kWrap, true).toBool());
  menu.addSeparator();
  AddPanels(menu);
  menu.addSeparator();
  Action(menu, words::kNextPanel, QKeySequence("F6"), [this] { NextPanel(false); });
  Action(menu, words::kPreviousPanel, QKeySequence("Shift+F6"), [this] { NextPanel(true); });
}

void MainWindow::AddLayouts(QMenu& menu) {
  auto* group = new QActionGroup(this);
  group->setExclusionPolicy(QActionGroup::ExclusionPolicy::ExclusiveOptional);
  std::map<Views::Layout, QAction*> layouts;
  const auto layout = [&](const Localized& text, const char* keys, Views::Layout each) {
    QAction* action =
        Action(menu, text, QKeySequence(keys), [this, each] { views_->Arrange(each); });
    action->setCheckable(true);
    group->addAction(action);
    layouts[each] = action;
  };
  layout(words::kLayoutBeside, "Alt+1", Views::Layout::beside);
  layout(words::kLayoutBelow, "Alt+2", Views::Layout::below);
  layout(words::kLayoutAlone, "Alt+3", Views::Layout::alone);
  QAction* preview = layouts[Views::Layout::preview] = menu.addAction(Text(words::kPreviewAction));
  preview->setShortcut(QKeySequence("Alt+4"));
  preview->setCheckable(true);
  connect(preview, &QAction::triggered, this, [this](bool shows) {
    views_->ShowPreview(shows);
    // The view that had the keyboard focus may be hidden.
    if (!shows || (!source_->isVisible() && !design_->isVisible())) FocusPage();
  });
  toolBar_->Add(ToolBar::publishing, *preview, "preview", ToolBar::Caption::shown);
  QAction* source = menu.addAction(Text(words::kSource));
  QAction* design = menu.addAction(Text(words::kDesign));
  source->setShortcut(QKeySequence("Ctrl+1"));
  design->setShortcut(QKeySequence("Ctrl+2"));
  for (QAction* action : {source, design}) action->setCheckable(true);
  connect(source, &QAction::triggered, this, [this](bool shows) { views_->ShowSource(shows); });
  connect(design, &QAction::triggered, this, [this](bool shows) { views_->ShowDesign(shows); });
  views_->onArranged = [=, this] {
    for (const auto& [each, action] : layouts) action->setChecked(each == views_->Arranged());
    source->setChecked(!views_->IsSourceHidden());
    design->setChecked(!frame_->isHidden());
    // The preview has widths of its own.
    if (widths_ != nullptr) widths_->setEnabled(!frame_->isHidden());
    ShowStatus();
    // The hidden view may have had the focus.
    if (views_->isVisible() && QApplication::focusWidget() == nullptr) FocusPage();
  };
}

void MainWindow::AddPreview(QMenu& menu) {
  Action(menu, words::kNextRecord, QKeySequence("F7"), [this] { preview_->onStep(1); });
  Action(menu, words::kPreviousRecord, QKeySequence("Shift+F7"), [this] { preview_->onStep(-1); });
}

DesignFrame& MainWindow::ActiveFrame() {
  const bool inPreview = preview_->isAncestorOf(QApplication::focusWidget());
  return preview_->isVisible() && (inPreview || !frame_->isVisible()) ? preview_->Frame() : *frame_;
}

void MainWindow::AddWidths(QMenu& menu) {
  auto* group = new QActionGroup(this);
  const auto width = [&](const Localized& text, const char* icon, DesignFrame::PageWidth each) {
    QAction* action = Action(menu, text, {}, [this, each] { frame_->Show(each); });
    action->setCheckable(true);
    action->setChecked(each == frame_->Shown());
    group->addAction(action);
    toolBar_->Add(ToolBar::widths, *action, icon);
  };
  width(words::kFit, "fit", DesignFrame::PageWidth::fit);
  width(words::kMailWidth, "desktop", DesignFrame::PageWidth::mail);
  width(words::kPhoneWidth, "phone", DesignFrame::PageWidth::phone);
  widths_ = group;
  Action(menu, words::kZoomIn, QKeySequence::ZoomIn, [this] { ActiveFrame().ZoomIn(); });
  Action(menu, words::kZoomOut, QKeySequence::ZoomOut, [this] { ActiveFrame().ZoomOut(); });
  Action(menu, words::kZoomActual, QKeySequence("Ctrl+0"), [this] { ActiveFrame().ZoomTo(1); });
  frame_->onZoomed = preview_->Frame().onZoomed = [this] { ShowStatus(); };
}

void MainWindow::AddPanels(QMenu& menu) {
  int number = 3;
  for (Panel& panel : panels_) {
    if (panel.dock == nullptr) continue;
    QAction* action = panel.shows = menu.addAction(panel.dock->windowTitle());
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
}

void MainWindow::ShowPanel(QWidget& panel) {
  QDockWidget* dock = PanelOf(panel).dock;
  dock->show();
  dock->raise();
  panel.setFocus();
}

const MainWindow::Panel& MainWindow::PanelOf(const QWidget& widget) const {
  return *std::ranges::find(panels_, &widget, &Panel::widget);
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
  QWidget& next = now == stops.end() ? *stops.front() : **now;
  if (QDockWidget* dock = PanelOf(next).dock) dock->raise();  // it may be behind another one
  next.setFocus(Qt::TabFocusReason);
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
  if (next) GoTo(*next);
}

void MainWindow::AddTemplates(QMenu& menu) {
  for (const Template& each : Templates())
    Action(menu, {}, {}, [this, page = each.page] {
      session_->NewFrom(page.toStdString());
    })->setText(QString(each.title).replace('&', "&&"));
}

void MainWindow::ChooseAndOpen() {
  const QString file = QFileDialog::getOpenFileName(
      this, Text(words::kOpenTitle), session_->File().Folder(), Text(words::kPageFiles));
  if (!file.isEmpty()) session_->Open(file);
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
