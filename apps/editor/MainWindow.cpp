#include "apps/editor/MainWindow.h"

#include <QCloseEvent>
#include <QDockWidget>
#include <QFileDialog>
#include <QLabel>
#include <QMenuBar>
#include <QScreen>
#include <QSettings>
#include <QStackedWidget>
#include <QStatusBar>
#include <QStyle>
#include <QTextBlock>
#include <QToolButton>
#include <QVBoxLayout>

#include "apps/editor/Ask.h"
#include "apps/editor/Colors.h"
#include "apps/editor/DesignEditing.h"
#include "apps/editor/DesignFrame.h"
#include "apps/editor/DesignView.h"
#include "apps/editor/EmptyHint.h"
#include "apps/editor/FindBar.h"
#include "apps/editor/FocusFrame.h"
#include "apps/editor/Mending.h"
#include "apps/editor/Panels.h"
#include "apps/editor/PreviewPanel.h"
#include "apps/editor/Previewing.h"
#include "apps/editor/PropertyBrowser.h"
#include "apps/editor/ToolBar.h"
#include "apps/editor/Toolbox.h"
#include "apps/editor/UsesPanel.h"
#include "apps/editor/Views.h"
#include "apps/editor/Welcome.h"
#include "apps/editor/WhereUsed.h"
#include "apps/editor/Words.h"
#include "common/values/RuntimeError.h"
#include "host/qt/Messages.h"
#include "host/qt/QtText.h"

// The resources are in a library; the macro must be outside any namespace.
static void UseResources() { Q_INIT_RESOURCE(editor); }

namespace kvo::editor {
namespace {

using std::chrono::milliseconds;

// Updates the views soon after a key, but not in the middle of a fast-typed word.
constexpr milliseconds kAnalysisDelay(40);
// Returns the size of a window that was never opened before: fits the screen with a frame of an
// assumed thickness, since the real one is unknown until the window is shown.
QSize FirstSize(const QWidget& window) {
  constexpr QSize kWanted(1840, 1040);
  constexpr QSize kFrame(16, 48);
  return kWanted.boundedTo(window.screen()->availableSize() - kFrame);
}

// From here on, a mail of 600 pixels and its source fit side by side between the panels.
constexpr int kWideWindow = 1800;
constexpr int kNarrowestPanel = 185;  // for the longest name of a tool

constexpr char kGeometry[] = "geometry";
constexpr char kState[] = "state";
constexpr int kStateVersion = 3;

}  // namespace

MainWindow::MainWindow(QtPlatform& platform, Session::Places places)
    : session_(std::make_unique<Session>(*this, std::move(places))),
      source_(new SourceEdit(Page(), this)),
      design_(new DesignView(this)),
      frame_(new DesignFrame(*design_, design_->View(), this)),
      preview_(new PreviewPanel(this)),
      find_(new FindBar(*source_, this)),
      welcome_(new Welcome(this)),
      middle_(new QStackedWidget(this)),
      toolBar_(new ToolBar(this)),
      toolbox_(new Toolbox(this)),
      outline_(new OutlinePanel(this)),
      problems_(new ProblemsPanel(this)),
      usesList_(new UsesPanel(this)),
      browser_(new PropertyBrowser(this)),
      runtime_(new TextPanel(Text(words::kRuntimeText), this)),
      output_(new TextPanel(Text(words::kOutput), this)),
      placeLabel_(new QLabel(this)),
      encodingLabel_(new QLabel(this)),
      zoomLabel_(new QLabel(this)),
      problemCount_(new QToolButton(this)),
      controls_(std::make_unique<ControlEditing>(*session_, *source_, platform, *this)),
      editing_(std::make_unique<DesignEditing>(*this, Page(), *source_, *design_)),
      mending_(std::make_unique<Mending>(*this, Page(), *source_, *editing_, *problems_)),
      previewing_(std::make_unique<Previewing>(*session_, *this, *preview_)),
      uses_(std::make_unique<WhereUsed>(*session_, *this, *source_, *usesList_, *this)),
      analyst_(std::make_unique<Analyst>(
          [this](const std::shared_ptr<const Analysis>& analysis) { Analysed(analysis); })) {
  UseResources();
  toolbox_->setMinimumWidth(kNarrowestPanel);
  resize(FirstSize(*this));
  auto* sourcePane = new QWidget(this);
  auto* column = new QVBoxLayout(sourcePane);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(new FocusFrame(source_, this));
  column->addWidget(find_);
  views_ = new Views(frame_, sourcePane, preview_, this);
  middle_->addWidget(views_);
  middle_->addWidget(welcome_);
  setCentralWidget(middle_);
  addToolBar(toolBar_);
  panels_ = {{nullptr, source_}, {nullptr, design_}, {nullptr, preview_}};

  QDockWidget* toolbox = Dock(words::kToolbox, "toolbox", toolbox_, Qt::LeftDockWidgetArea);
  QDockWidget* outline = Dock(words::kOutline, "outline", outline_, Qt::LeftDockWidgetArea);
  QDockWidget* properties =
      Dock(words::kProperties, "properties", browser_, Qt::RightDockWidgetArea);
  Dock(words::kRuntimeText, "runtime", runtime_, Qt::RightDockWidgetArea);
  QDockWidget* problems = Dock(words::kProblems, "problems", problems_, Qt::BottomDockWidgetArea);
  QDockWidget* output = Dock(words::kOutput, "output", output_, Qt::BottomDockWidgetArea);
  QDockWidget* uses = Dock(words::kWhereUsedTitle, "uses", usesList_, Qt::BottomDockWidgetArea);
  tabifyDockWidget(problems, output);
  tabifyDockWidget(output, uses);
  for (QDockWidget* folded : {problems, output, uses}) folded->hide();
  resizeDocks({outline, properties}, {250, 270}, Qt::Horizontal);
  resizeDocks({toolbox, outline}, {400, 250}, Qt::Vertical);
  resizeDocks({problems}, {150}, Qt::Vertical);
  new EmptyHint(*outline_, words::kNoControls);
  new EmptyHint(*problems_, words::kNoProblems);
  new EmptyHint(*browser_->findChild<QTreeView*>(), words::kNoProperties);
  runtime_->setPlaceholderText(Text(words::kNoRuntimeText));
  output_->setPlaceholderText(Text(words::kNoOutput));

  frame_->Restore();
  MakeStatusBar();
  MakeMenus();
  MakeWelcome();

  const QTextDocument* document = Page().Document();
  connect(document, &QTextDocument::modificationChanged, this, [this] { ShowTitle(); });
  connect(document, &QTextDocument::undoAvailable, this, [this] { ShowSteps(); });
  connect(document, &QTextDocument::redoAvailable, this, [this] { ShowSteps(); });
  connect(document, &QTextDocument::undoCommandAdded, this, [this] { ShowSteps(); });
  connect(source_, &QPlainTextEdit::cursorPositionChanged, this, [this] { CaretMoved(); });
  connect(source_, &QPlainTextEdit::selectionChanged, this, [this] { CaretMoved(); });
  source_->onOpenControl = [this](int position, bool doubleClicked) {
    controls_->OpenPages(position, doubleClicked);
  };
  source_->onToolDropped = toolbox_->onInsert =
      editing_->onToolDropped = [this](int tool) { Insert(tool); };
  controls_->onPagesClosed = [this] {
    if (!editing_->IsActive()) return;
    design_->setFocus();
    editing_->FollowSource();
  };
  editing_->onUrgent = [this] { analysisTimer_.start(0); };
  editing_->onState = [this](const DesignEditing::State& state) { ShowFormats(state); };
  browser_->onLet = [this](const std::string& property, const Variant& value) {
    if (const auto control = source_->CurrentControl()) controls_->Let(*control, property, value);
    ShowControl();  // replaces a refused value by the actual one
  };
  browser_->onRename = [this](const std::string& id) {
    if (const auto control = source_->CurrentControl()) controls_->Rename(*control, id);
    ShowControl();
  };
  outline_->onClicked = problems_->onClicked = [this](int position) { source_->Reveal(position); };
  outline_->onGoTo = [this](int position) { GoTo(position); };
  problems_->onGoTo = [this](int position) {
    NeedSource();
    source_->GoTo(position);
  };
  preview_->onPlace = [this](std::optional<int> control, int position, bool goes) {
    GoToPlace(control, position, goes);
  };
  preview_->onShowProblems = [this] { ShowProblems(); };
  uses_->onShow = [this](int position, bool isControl, bool goes) {
    if (!isControl) NeedSource();
    GoToPlace({}, position, goes);
  };
  uses_->onShowPanel = [this] { ShowPanel(*usesList_); };
  usesList_->onLeave = [this] { FocusPage(); };
  design_->onBoxClicked = [this](int index) { GoToIndex(index, false); };
  design_->onBoxDoubleClicked = [this](int index) { GoToIndex(index, true); };

  analysisTimer_.setSingleShot(true);
  connect(&analysisTimer_, &QTimer::timeout, this, [this] { RequestAnalysis(); });
  setWindowIcon(QIcon(":/editor/icons/kvo-editor.svg"));
  RestoreWindow();
  session_->New();
  source_->setFocus();
}

MainWindow::~MainWindow() {
  Page().onChanged = nullptr;
  Page().Document()->disconnect(this);
  source_->disconnect(this);
  for (const Panel& panel : panels_)  // docks still send signals during destruction
    if (panel.dock != nullptr) panel.dock->disconnect(this);
  delete takeCentralWidget();  // destroys the views before the page
}

QDockWidget* MainWindow::Dock(const Localized& title, const char* name, QWidget* content,
                              Qt::DockWidgetArea area) {
  auto* dock = new QDockWidget(Text(title), this);
  dock->setObjectName(name);
  dock->setWidget(new FocusFrame(content, dock));
  addDockWidget(area, dock);
  panels_.push_back({dock, content});
  return dock;
}

void MainWindow::RestoreWindow() {
  const QSettings settings;
  restoreGeometry(settings.value(kGeometry).toByteArray());
  restoreState(settings.value(kState).toByteArray(), kStateVersion);
  views_->Restore(width() < kWideWindow ? Views::Layout::below : Views::Layout::beside);
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (!session_->End()) return event->ignore();
  QSettings settings;
  settings.setValue(kGeometry, saveGeometry());
  settings.setValue(kState, IsWelcoming() ? panelsBefore_ : saveState(kStateVersion));
  views_->Remember();
  frame_->Remember();
  event->accept();
}

void MainWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() == QEvent::ActivationChange && isActiveWindow()) session_->LookAtFile();
}

bool MainWindow::event(QEvent* event) {
  if (event->type() == QEvent::ThemeChange) UseColors();
  return QMainWindow::event(event);
}

// --- before there is a page ---

void MainWindow::MakeWelcome() {
  welcome_->onNew = [this] { session_->New(); };
  welcome_->onOpen = [this] { ChooseAndOpen(); };
  welcome_->onTemplate = [this](const QByteArray& page) { session_->NewFrom(page.toStdString()); };
  welcome_->onRecent = [this](const QString& file) { session_->Open(file); };
}

bool MainWindow::IsWelcoming() const { return middle_->currentWidget() == welcome_; }

void MainWindow::ShowWelcome() {
  if (IsWelcoming()) return;
  panelsBefore_ = saveState(kStateVersion);
  for (const Panel& panel : panels_)
    if (panel.dock != nullptr) panel.dock->hide();
  std::ranges::copy_if(pageActions_, std::back_inserter(disabled_), &QAction::isEnabled);
  for (QAction* action : disabled_) action->setEnabled(false);
  for (QWidget* widget : pageStatus_) widget->hide();
  welcome_->Refresh();
  middle_->setCurrentWidget(welcome_);
  welcome_->setFocus();
  ShowTitle();
}

void MainWindow::LeaveWelcome() {
  if (!IsWelcoming()) return;
  middle_->setCurrentWidget(views_);
  restoreState(panelsBefore_, kStateVersion);
  for (QAction* action : std::exchange(disabled_, {})) action->setEnabled(true);
  for (QWidget* widget : pageStatus_) widget->show();
  FocusPage();
}

// --- views of the page ---

void MainWindow::PageChanged() {
  editing_->PageChanged();
  // Started by the first key; the next ones do not postpone it.
  if (!analysisTimer_.isActive()) analysisTimer_.start(kAnalysisDelay);
}

void MainWindow::RequestAnalysis() {
  AnalysisRequest request;
  request.revision = Page().Revision();
  request.text = Page().Content();
  if (!session_->OfficeFile().isEmpty())
    request.office = std::make_shared<office::Office::Description>(session_->Office()->Described());
  request.newPage = std::exchange(newPage_, false);
  request.answered = editing_->Answered();
  analyst_->Request(std::move(request));
  previewing_->PageChanged();
  ShowControl();
}

void MainWindow::Analysed(const std::shared_ptr<const Analysis>& analysis) {
  analysis_ = analysis;
  editing_->Analysed(*analysis);
  frame_->PageChanged();
  outline_->Show(analysis);
  problems_->Show(analysis);
  mending_->Analysed(analysis);
  if (output_->isVisible()) output_->Show(analysis->output);
  MarkControl();
  ShowStatus();
  if (onAnalysed) onAnalysed();
}

void MainWindow::CaretMoved() {
  ShowControl();
  MarkControl();
  ShowStatus();
}

void MainWindow::ShowControl() {
  const auto position = source_->CurrentControl();
  openPages_->setEnabled(position.has_value());
  if (!position) {
    browser_->ShowNone(Text(words::kNoControl));
    runtime_->Show({});
    return;
  }
  try {
    const std::shared_ptr<Control> control = controls_->Load(*position);
    const auto look = Page().LookAt(*position);
    browser_->Show(control, page::Load(*look->contract, {}), ToQt(look->id), session_->Office());
    runtime_->Show(ToQt(control->GetRuntimeText()));
  } catch (const std::exception& failure) {
    runtime_->Show(ToQt(FailureText(failure)));
  }
}

void MainWindow::MarkControl() {
  if (analysis_ == nullptr || analysis_->revision != Page().Revision()) return;
  int index = -1;
  if (const auto position = source_->CurrentControl()) {
    const auto entry =
        std::ranges::lower_bound(analysis_->outline, *position, {}, &OutlineEntry::position);
    if (entry != analysis_->outline.end() && entry->position == *position)
      index = static_cast<int>(entry - analysis_->outline.begin());
  }
  design_->Mark(index);
  preview_->Mark(index);
  outline_->Mark(index);
}

void MainWindow::GoToIndex(int index, bool open) {
  if (analysis_ == nullptr || index < 0 || index >= static_cast<int>(analysis_->outline.size()))
    return;
  const OutlineEntry entry = analysis_->outline[static_cast<std::size_t>(index)];
  source_->Reveal(entry.position);
  if (open && entry.boxed && Page().IsControl(entry.position))
    controls_->OpenPages(entry.position, true);
}

void MainWindow::GoToPlace(std::optional<int> control, int position, bool goes) {
  if (control && analysis_ != nullptr &&
      static_cast<std::size_t>(*control) < analysis_->outline.size())
    position = analysis_->outline[static_cast<std::size_t>(*control)].position;
  if (goes && !source_->isVisible() && !design_->isVisible()) views_->ShowSource(true);
  if (goes)
    GoTo(position);
  else
    source_->Reveal(position);
}

void MainWindow::GoTo(int position) {
  source_->Reveal(position);
  FocusPage();
}

void MainWindow::FocusPage() {
  if (source_->isVisible())
    source_->setFocus();
  else if (design_->isVisible())
    design_->setFocus();
  else
    preview_->setFocus();
}

void MainWindow::NeedSource() {
  if (!source_->isVisible()) views_->ShowSource(true);
}

void MainWindow::Insert(int tool) {
  const auto number = static_cast<std::size_t>(tool);  // another editor's drag may have any
  if (number >= toolbox_->Tools().size()) return;
  const bool inDesign = editing_->IsActive();
  const Tool& inserted = toolbox_->Tools()[number];
  const bool begun = inDesign && editing_->PrepareInsert(ControlEditing::InsertStep(inserted));
  using Steps = ControlEditing::Steps;
  controls_->Insert(inserted, begun ? Steps::partOfTheLast : Steps::ofTheirOwn);
  if (inDesign) {
    design_->setFocus();
    editing_->FollowSource();
  } else {
    FocusPage();
  }
}

void MainWindow::ShowFormats(const DesignEditing::State& state) {
  link_ = state.link;
  const auto check = [this](const char* name, bool checked) {
    if (QAction* action = formats_.value(name)) action->setChecked(checked);
  };
  check("bold", state.bold);
  check("italic", state.italic);
  check("underline", state.underline);
}

void MainWindow::ShowSteps() {
  const QString undo = Page().UndoName();
  const QString redo = Page().RedoName();
  undo_->setEnabled(!undo.isEmpty());
  redo_->setEnabled(!redo.isEmpty());
  undo_->setText(undo.isEmpty() ? Text(words::kUndo) : Text(words::kUndoStep, {undo}));
  redo_->setText(redo.isEmpty() ? Text(words::kRedo) : Text(words::kRedoStep, {redo}));
}

void MainWindow::ShowTitle() {
  if (IsWelcoming()) return setWindowTitle("KVOPDesignObjects");
  setWindowTitle(session_->Title() + "[*] – KVOPDesignObjects");
  setWindowModified(Page().IsModified());
}

void MainWindow::MakeStatusBar() {
  problemCount_->setObjectName("problemCount");
  problemCount_->setText(Text(words::kProblemCountNone));
  problemCount_->setAutoRaise(true);
  problemCount_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  problemCount_->setToolTip(Text(words::kProblemCountTip));
  connect(problemCount_, &QToolButton::clicked, this,
          [this] { PanelOf(*problems_).shows->trigger(); });
  pageStatus_ = {placeLabel_, encodingLabel_, zoomLabel_, problemCount_};
  for (QWidget* widget : pageStatus_) statusBar()->addPermanentWidget(widget);
}

void MainWindow::ShowStatus() {
  const QTextCursor cursor = source_->textCursor();
  placeLabel_->setText(Text(words::kCaretPlace, {QString::number(cursor.blockNumber() + 1),
                                                 QString::number(cursor.positionInBlock() + 1)}));
  const QByteArray& lineBreak = Page().Content().LineBreak();
  encodingLabel_->setText(ToQt(Page().Content().Encoding().Name()).toUpper() + "  " +
                          (lineBreak == "\r\n" ? "CR LF"
                           : lineBreak == "\n" ? "LF"
                                               : "CR"));
  const DesignFrame& frame = ActiveFrame();
  zoomLabel_->setText(Text(&frame == frame_ ? words::kZoom : words::kPreviewZoom,
                           {QString::number(qRound(frame.Zoom() * 100))}));
  if (analysis_ == nullptr) return;
  const auto errors = std::ranges::count_if(analysis_->problems, [](const ProblemEntry& entry) {
    return entry.problem.severity == page::Severity::error;
  });
  const auto warnings = static_cast<std::ptrdiff_t>(analysis_->problems.size()) - errors;
  problemCount_->setText(
      analysis_->problems.empty()
          ? Text(words::kProblemCountNone)
          : Text(words::kProblemCount, {QString::number(errors), QString::number(warnings)}));
  problemCount_->setIcon(style()->standardIcon(errors > 0     ? QStyle::SP_MessageBoxCritical
                                               : warnings > 0 ? QStyle::SP_MessageBoxWarning
                                                              : QStyle::SP_DialogApplyButton));
}

// --- questions and messages of the session ---

std::size_t MainWindow::Ask(const Question& question) { return editor::Ask(this, question); }

void MainWindow::Tell(const QString& text) { ShowMessageBox(this, text); }

void MainWindow::Note(const QString& text, milliseconds time) {
  statusBar()->showMessage(text, static_cast<int>(time.count()));
}

QString MainWindow::ChooseFile(const Localized& title, const QString& proposed) {
  return QFileDialog::getSaveFileName(this, Text(title), proposed, Text(words::kPageFiles));
}

void MainWindow::ShowProblems() { ShowPanel(*problems_); }

void MainWindow::PageEnds() {
  newPage_ = true;
  analysis_ = nullptr;
  caret_ = source_->textCursor().position();
}

void MainWindow::PageStarted(bool sameFile) {
  previewing_->PageStarted(sameFile);
  LeaveWelcome();
  source_->setTextCursor(QTextCursor(Page().Document()));
  if (sameFile) source_->GoTo(std::min(caret_, Page().Document()->characterCount() - 1));
  FileNamed();
  ShowSteps();
  ShowStatus();
}

void MainWindow::FileNamed() {
  design_->Folder(session_->File().Folder());
  previewing_->FolderChanged();
  ShowTitle();
}

void MainWindow::OfficeChanged() {
  if (builtInTools_) UseToolbox({});
  previewing_->OfficeChanged();
  PageChanged();
  ShowControl();
}

}  // namespace kvo::editor
