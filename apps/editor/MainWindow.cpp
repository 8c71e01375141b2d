#include "apps/editor/MainWindow.h"

#include <QCloseEvent>
#include <QDockWidget>
#include <QFileDialog>
#include <QLabel>
#include <QMenuBar>
#include <QScreen>
#include <QSettings>
#include <QSplitter>
#include <QStatusBar>
#include <QTextBlock>
#include <QVBoxLayout>

#include "apps/editor/Ask.h"
#include "apps/editor/DesignView.h"
#include "apps/editor/FindBar.h"
#include "apps/editor/Panels.h"
#include "apps/editor/PropertyBrowser.h"
#include "apps/editor/Toolbox.h"
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
  constexpr QSize kWanted(1280, 800);
  constexpr QSize kFrame(16, 48);
  return kWanted.boundedTo(window.screen()->availableSize() - kFrame);
}

constexpr char kGeometry[] = "geometry";
constexpr char kState[] = "state";
constexpr char kSplitter[] = "splitter";
constexpr int kStateVersion = 1;

}  // namespace

MainWindow::MainWindow(QtPlatform& platform, Session::Places places)
    : session_(std::make_unique<Session>(*this, std::move(places))),
      source_(new SourceEdit(Page(), this)),
      design_(new DesignView(this)),
      find_(new FindBar(*source_, this)),
      splitter_(new QSplitter(this)),
      toolbox_(new Toolbox(this)),
      outline_(new OutlinePanel(this)),
      problems_(new ProblemsPanel(this)),
      browser_(new PropertyBrowser(this)),
      runtime_(new TextPanel(Text(words::kRuntimeText), this)),
      output_(new TextPanel(Text(words::kOutput), this)),
      placeLabel_(new QLabel(this)),
      encodingLabel_(new QLabel(this)),
      problemLabel_(new QLabel(this)),
      controls_(std::make_unique<ControlEditing>(*session_, *source_, platform, *this)),
      analyst_(std::make_unique<Analyst>(
          [this](const std::shared_ptr<const Analysis>& analysis) { Analysed(analysis); })) {
  UseResources();
  resize(FirstSize(*this));
  auto* left = new QWidget(this);
  auto* column = new QVBoxLayout(left);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(source_);
  column->addWidget(find_);
  splitter_->addWidget(left);
  splitter_->addWidget(design_);
  splitter_->setSizes({600, 600});
  setCentralWidget(splitter_);
  panels_ = {{nullptr, source_}, {nullptr, design_}};

  QDockWidget* toolbox = Dock(words::kToolbox, "toolbox", toolbox_, Qt::LeftDockWidgetArea);
  QDockWidget* outline = Dock(words::kOutline, "outline", outline_, Qt::LeftDockWidgetArea);
  QDockWidget* properties =
      Dock(words::kProperties, "properties", browser_, Qt::RightDockWidgetArea);
  Dock(words::kRuntimeText, "runtime", runtime_, Qt::RightDockWidgetArea);
  QDockWidget* problems = Dock(words::kProblems, "problems", problems_, Qt::BottomDockWidgetArea);
  QDockWidget* output = Dock(words::kOutput, "output", output_, Qt::BottomDockWidgetArea);
  tabifyDockWidget(problems, output);
  problems->raise();
  resizeDocks({outline, properties}, {250, 270}, Qt::Horizontal);
  resizeDocks({toolbox, outline}, {400, 250}, Qt::Vertical);
  resizeDocks({problems}, {130}, Qt::Vertical);

  for (QLabel* label : {placeLabel_, encodingLabel_, problemLabel_})
    statusBar()->addPermanentWidget(label);
  MakeMenus();

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
  source_->onToolDropped = toolbox_->onInsert = [this](int tool) {
    const auto number = static_cast<std::size_t>(tool);  // another editor's drag may have any
    if (number < toolbox_->Tools().size()) controls_->Insert(toolbox_->Tools()[number]);
  };
  browser_->onLet = [this](const std::string& property, const Variant& value) {
    if (const auto control = source_->CurrentControl()) controls_->Let(*control, property, value);
    ShowControl();  // replaces a refused value by the actual one
  };
  outline_->onClicked = problems_->onClicked = [this](int position) { source_->Reveal(position); };
  outline_->onGoTo = problems_->onGoTo = [this](int position) { source_->GoTo(position); };
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
  dock->setWidget(content);
  addDockWidget(area, dock);
  panels_.push_back({dock, content});
  return dock;
}

void MainWindow::RestoreWindow() {
  const QSettings settings;
  restoreGeometry(settings.value(kGeometry).toByteArray());
  restoreState(settings.value(kState).toByteArray(), kStateVersion);
  splitter_->restoreState(settings.value(kSplitter).toByteArray());
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (!session_->End()) return event->ignore();
  QSettings settings;
  settings.setValue(kGeometry, saveGeometry());
  settings.setValue(kState, saveState(kStateVersion));
  settings.setValue(kSplitter, splitter_->saveState());
  event->accept();
}

void MainWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() == QEvent::ActivationChange && isActiveWindow()) session_->LookAtFile();
}

// --- views of the page ---

void MainWindow::PageChanged() {
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
  analyst_->Request(std::move(request));
  ShowControl();
}

void MainWindow::Analysed(const std::shared_ptr<const Analysis>& analysis) {
  analysis_ = analysis;
  design_->Show(*analysis);
  outline_->Show(analysis);
  problems_->Show(analysis);
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
    browser_->Show(nullptr, nullptr, Text(words::kNoControl));
    runtime_->Show({});
    return;
  }
  try {
    const std::shared_ptr<Control> control = controls_->Load(*position);
    const auto look = Page().LookAt(*position);
    browser_->Show(control, page::Load(*look->contract, {}),
                   ToQt(look->contract->name) + ' ' + ToQt(look->id));
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
  outline_->Mark(index);
}

void MainWindow::GoToIndex(int index, bool open) {
  if (analysis_ == nullptr || index < 0 || index >= static_cast<int>(analysis_->outline.size()))
    return;
  const OutlineEntry entry = analysis_->outline[static_cast<std::size_t>(index)];
  source_->GoTo(entry.position);
  if (open && entry.boxed && Page().IsControl(entry.position))
    controls_->OpenPages(entry.position, true);
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
  setWindowTitle(session_->Title() + "[*] – KVOPDesignObjects");
  setWindowModified(Page().IsModified());
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
  if (analysis_ == nullptr) return;
  const auto errors = std::ranges::count_if(analysis_->problems, [](const ProblemEntry& entry) {
    return entry.problem.severity == page::Severity::error;
  });
  const auto warnings = static_cast<std::ptrdiff_t>(analysis_->problems.size()) - errors;
  problemLabel_->setText(
      Text(words::kProblemCount, {QString::number(errors), QString::number(warnings)}));
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
  source_->setTextCursor(QTextCursor(Page().Document()));
  if (sameFile) source_->GoTo(std::min(caret_, Page().Document()->characterCount() - 1));
  FileNamed();
  ShowSteps();
  ShowStatus();
}

void MainWindow::FileNamed() {
  design_->Folder(session_->File().Folder());
  ShowTitle();
}

void MainWindow::OfficeChanged() {
  if (builtInTools_) UseToolbox({});
  PageChanged();
  ShowControl();
}

}  // namespace kvo::editor
