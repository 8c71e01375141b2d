#include "apps/editor/MainWindow.h"

#include <QCloseEvent>
#include <QDockWidget>
#include <QFileInfo>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
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
#include "apps/editor/SourceLines.h"
#include "apps/editor/Toolbox.h"
#include "apps/editor/Words.h"
#include "common/values/RuntimeError.h"
#include "document/office/OfficeFile.h"
#include "document/page/File.h"
#include "host/qt/Messages.h"
#include "host/qt/QtText.h"

// The resources are in a library; the macro must stand outside of any namespace.
static void UseResources() { Q_INIT_RESOURCE(editor); }

namespace kvo::editor {
namespace {

using std::chrono::milliseconds;

// After a key the views follow at once, but not in the middle of a word typed fast.
constexpr milliseconds kAnalysisDelay(40);
constexpr milliseconds kDraftDelay(800);
constexpr milliseconds kOutsideDelay(300);

constexpr qsizetype kProblemsNamed = 3;  // in a question; the panel has them all

// The screen's room for a window that was never opened before, within its frame: how thick that
// will be, a desktop tells only once the window shows.
QSize FirstSize(const QWidget& window) {
  constexpr QSize kWanted(1280, 800);
  constexpr QSize kFrame(16, 48);
  return kWanted.boundedTo(window.screen()->availableSize() - kFrame);
}

constexpr char kGeometry[] = "geometry";
constexpr char kState[] = "state";
constexpr char kSplitter[] = "splitter";
constexpr int kStateVersion = 1;

constexpr char kNewPage[] =
    "<!DOCTYPE html>\n"
    "<html>\n"
    "<head>\n"
    "<meta charset=\"utf-8\">\n"
    "<title></title>\n"
    "</head>\n"
    "<body>\n"
    "\n"
    "</body>\n"
    "</html>\n";

}  // namespace

MainWindow::MainWindow(QtPlatform& platform, Places places)
    : platform_(platform),
      places_(std::move(places)),
      page_(new PageDocument(this)),
      source_(new SourceEdit(*page_, this)),
      design_(new DesignView(this)),
      find_(new FindBar(*source_, this)),
      splitter_(new QSplitter(this)),
      toolbox_(new Toolbox(this)),
      outline_(new OutlinePanel(this)),
      problems_(new ProblemsPanel(this)),
      browser_(new PropertyBrowser(this)),
      runtime_(new TextPanel(Said(words::kRuntimeText), this)),
      output_(new TextPanel(Said(words::kOutput), this)),
      placeLabel_(new QLabel(this)),
      encodingLabel_(new QLabel(this)),
      problemLabel_(new QLabel(this)),
      controls_(std::make_unique<ControlEditing>(*page_, *source_, platform_, *this)),
      draft_(std::make_shared<Draft>(places_.drafts)),
      analyst_(std::make_unique<Analyst>(
          [this](const std::shared_ptr<const Analysis>& analysis) { Analysed(analysis); })) {
  UseResources();
  draftWriter_.setMaxThreadCount(1);
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

  page_->onChanged = [this] { PageChanged(); };
  connect(page_->Document(), &QTextDocument::modificationChanged, this, [this] { ShowTitle(); });
  connect(page_->Document(), &QTextDocument::undoAvailable, this, [this] { ShowSteps(); });
  connect(page_->Document(), &QTextDocument::redoAvailable, this, [this] { ShowSteps(); });
  connect(page_->Document(), &QTextDocument::undoCommandAdded, this, [this] { ShowSteps(); });
  connect(source_, &QPlainTextEdit::cursorPositionChanged, this, [this] { CaretMoved(); });
  connect(source_, &QPlainTextEdit::selectionChanged, this, [this] { CaretMoved(); });
  source_->onOpenControl = [this](int position, bool doubleClicked) {
    controls_->OpenPages(position, doubleClicked);
  };
  source_->onToolDropped = toolbox_->onInsert = [this](int tool) {
    controls_->Insert(toolbox_->Tools()[static_cast<std::size_t>(tool)]);
  };
  browser_->onLet = [this](const std::string& property, const Variant& value) {
    if (const auto control = source_->CurrentControl()) controls_->Let(*control, property, value);
    ShowControl();  // a value that was refused gives way to the one that holds
  };
  outline_->onClicked = problems_->onClicked = [this](int position) { source_->Reveal(position); };
  outline_->onGoTo = problems_->onGoTo = [this](int position) { source_->GoTo(position); };
  design_->onBoxClicked = [this](int index) { GoToIndex(index, false); };
  design_->onBoxDoubleClicked = [this](int index) { GoToIndex(index, true); };

  analysisTimer_.setSingleShot(true);
  draftTimer_.setSingleShot(true);
  outsideTimer_.setSingleShot(true);
  connect(&analysisTimer_, &QTimer::timeout, this, [this] { RequestAnalysis(); });
  connect(&draftTimer_, &QTimer::timeout, this, [this] { WriteDraft(); });
  connect(&outsideTimer_, &QTimer::timeout, this, [this] { FileChangedOutside(); });
  connect(&watcher_, &QFileSystemWatcher::fileChanged, this,
          [this] { outsideTimer_.start(kOutsideDelay); });
  setWindowIcon(QIcon(":/editor/icons/kvo-editor.svg"));
  RestoreWindow();
  FindCompanions();
  Start(kNewPage, false);
  source_->setFocus();
}

MainWindow::~MainWindow() {
  draftWriter_.waitForDone();
  page_->onChanged = nullptr;
  page_->Document()->disconnect(this);
  source_->disconnect(this);
  for (const Panel& panel : panels_)  // docks tell that they hide while they are given up
    if (panel.dock != nullptr) panel.dock->disconnect(this);
  delete takeCentralWidget();  // the views end before the page
}

QDockWidget* MainWindow::Dock(const Localized& title, const char* name, QWidget* content,
                              Qt::DockWidgetArea area) {
  auto* dock = new QDockWidget(Said(title), this);
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
  if (!MayDiscard()) return event->ignore();
  DiscardDraft();
  QSettings settings;
  settings.setValue(kGeometry, saveGeometry());
  settings.setValue(kState, saveState(kStateVersion));
  settings.setValue(kSplitter, splitter_->saveState());
  event->accept();
}

void MainWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() == QEvent::ActivationChange && isActiveWindow() && !file_.Name().isEmpty())
    outsideTimer_.start(kOutsideDelay);
}

// --- what follows the page ---

void MainWindow::PageChanged() {
  // Started by the first key of a row and not put off by the next ones.
  if (!analysisTimer_.isActive()) analysisTimer_.start(kAnalysisDelay);
  if (page_->Document()->isModified() && !draftTimer_.isActive()) draftTimer_.start(kDraftDelay);
}

void MainWindow::RequestAnalysis() {
  AnalysisRequest request;
  request.revision = page_->Revision();
  request.text = page_->Content();
  if (!officeFile_.isEmpty())
    request.office = std::make_shared<office::Office::Description>(office_->Described());
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
    browser_->Show(nullptr, nullptr, Said(words::kNoControl));
    runtime_->Show({});
    return;
  }
  try {
    const std::shared_ptr<Control> control = controls_->Load(*position);
    const auto look = page_->LookAt(*position);
    browser_->Show(control, controls_->Fresh(*look->contract),
                   ToQt(look->contract->name) + ' ' + ToQt(look->id));
    runtime_->Show(ToQt(control->GetRuntimeText()));
  } catch (const std::exception& failure) {
    runtime_->Show(ToQt(FailureText(failure)));
  }
}

void MainWindow::MarkControl() {
  if (analysis_ == nullptr || analysis_->revision != page_->Revision()) return;
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
  if (open && entry.boxed && page_->IsControl(entry.position))
    controls_->OpenPages(entry.position, true);
}

void MainWindow::ShowSteps() {
  const QString undo = page_->UndoName();
  const QString redo = page_->RedoName();
  undo_->setEnabled(!undo.isEmpty());
  redo_->setEnabled(!redo.isEmpty());
  undo_->setText(undo.isEmpty() ? Said(words::kUndo) : Said(words::kUndoStep, {undo}));
  redo_->setText(redo.isEmpty() ? Said(words::kRedo) : Said(words::kRedoStep, {redo}));
}

void MainWindow::ShowTitle() {
  const QString name =
      file_.Name().isEmpty() ? Said(words::kUntitled) : QFileInfo(file_.Name()).fileName();
  setWindowTitle(name + "[*] – KVOPDesignObjects");
  setWindowModified(page_->Document()->isModified());
}

void MainWindow::ShowStatus() {
  const QTextCursor cursor = source_->textCursor();
  placeLabel_->setText(Said(words::kCaretPlace, {QString::number(cursor.blockNumber() + 1),
                                                 QString::number(cursor.positionInBlock() + 1)}));
  const QByteArray& lineBreak = page_->Content().LineBreak();
  encodingLabel_->setText(ToQt(page_->Content().Encoding().Name()).toUpper() + "  " +
                          (lineBreak == "\r\n" ? "CR LF"
                           : lineBreak == "\n" ? "LF"
                                               : "CR"));
  if (analysis_ == nullptr) return;
  const auto errors = std::ranges::count_if(analysis_->problems, [](const ProblemEntry& entry) {
    return entry.problem.severity == page::Severity::error;
  });
  const auto warnings = static_cast<std::ptrdiff_t>(analysis_->problems.size()) - errors;
  problemLabel_->setText(
      Said(words::kProblemCount, {QString::number(errors), QString::number(warnings)}));
}

// --- files ---

bool MainWindow::Guarded(const std::function<bool()>& work) {
  try {
    return work();
  } catch (const page::FileError& error) {
    Complain(ToQt(error.Text(UserLanguage())));
  } catch (const office::JsonFileError& error) {
    Complain(ToQt(error.Text(UserLanguage())));
  } catch (const std::exception& error) {
    Complain(ToQt(FailureText(error)));
  }
  return false;
}

void MainWindow::Complain(const QString& text) { ShowMessageBox(this, text); }

void MainWindow::Start(const std::string& bytes, bool modified) {
  newPage_ = true;
  analysis_ = nullptr;
  page_->Load(PageText(bytes));
  page_->Document()->setModified(modified);
  QTextCursor top(page_->Document());
  source_->setTextCursor(top);
  design_->Folder(file_.Folder());
  WatchFile();
  ShowTitle();
  ShowSteps();
  ShowStatus();
  if (modified) draftTimer_.start(kDraftDelay);
}

void MainWindow::New() {
  if (!MayDiscard()) return;
  DiscardDraft();
  file_.Forget();
  FindCompanions();
  Start(kNewPage, false);
}

bool MainWindow::Open(const QString& file) {
  return Guarded([&] {
    if (!MayDiscard()) return false;
    PageFile opened;
    const auto bytes = ReadPage(opened, QFileInfo(file).absoluteFilePath());
    if (!bytes) return false;
    DiscardDraft();
    file_ = opened;
    FindCompanions();
    Start(*bytes, false);
    Remember(file_.Name());
    return true;
  });
}

std::optional<std::string> MainWindow::ReadPage(PageFile& file, const QString& name) {
  std::string bytes = file.Read(name);
  if (page::Page(bytes).Encoding().kind() != page::PageEncoding::Kind::utf16) return bytes;
  Complain(Said(words::kUtf16, {name}));
  return std::nullopt;
}

bool MainWindow::MayDiscard() {
  if (!page_->Document()->isModified()) return true;
  PlainMessageBox box(QMessageBox::Question,
                      Said(words::kUnsaved, {windowTitle().section("[*]", 0, 0)}), this);
  auto* save = box.addButton(Said(words::kSave), QMessageBox::AcceptRole);
  auto* discard = box.addButton(Said(words::kDiscard), QMessageBox::DestructiveRole);
  box.addButton(Said(words::kCancel), QMessageBox::RejectRole);
  box.setDefaultButton(save);
  box.exec();
  if (box.clickedButton() == save) return Save();
  return box.clickedButton() == discard;
}

QString MainWindow::FirstErrors(const page::Problems& problems, SourceLines lines) {
  QStringList errors;
  for (page::Problem problem : problems) {
    if (problem.severity != page::Severity::error || errors.size() == kProblemsNamed) continue;
    lines.Translate(problem);
    errors += ToQt(page::Describe(problem, "", UserLanguage())).mid(1);
  }
  return errors.join("\n\n");
}

std::optional<std::string> MainWindow::BytesToSave() {
  const PageText content = page_->Content();
  PageText::Places places;
  const std::string bytes = content.Bytes(places);
  // A page that nobody touched is written as it stands.
  if (!page_->Document()->isModified()) return bytes;
  SavedPage saved = SavePage(bytes, false);
  if (saved.IsGood()) return saved.bytes;
  PlainMessageBox box(QMessageBox::Warning,
                      Said(words::kCannotSave) + "\n\n" +
                          FirstErrors(saved.problems, {bytes, places}) + "\n\n" +
                          Said(words::kSaveAnywayMeans),
                      this);
  QPushButton* overwrite = nullptr;
  if (saved.OnlyEditedByHand())
    overwrite = box.addButton(Said(words::kOverwrite), QMessageBox::DestructiveRole);
  QPushButton* asIs = box.addButton(Said(words::kSaveAsItStands), QMessageBox::ActionRole);
  QPushButton* show = box.addButton(Said(words::kShowProblems), QMessageBox::RejectRole);
  box.setDefaultButton(show);
  box.setEscapeButton(show);
  box.exec();
  if (box.clickedButton() == asIs) return bytes;
  if (overwrite != nullptr && box.clickedButton() == overwrite) return SavePage(bytes, true).bytes;
  ShowPanel(*problems_);
  return std::nullopt;
}

void MainWindow::TakeOver(const std::string& saved, const QString& step) {
  page_->TakeOver(PageText(saved, page_->Content().LineBreak()), step);
}

bool MainWindow::WriteTo(const QString& file) {
  return Guarded([&] {
    const auto bytes = BytesToSave();
    if (!bytes) return false;
    file_.Write(file, *bytes);
    TakeOver(*bytes, {});
    page_->Document()->setModified(false);
    DiscardDraft();
    WatchFile();
    ShowTitle();
    Remember(file);
    statusBar()->showMessage(Said(words::kSaved, {QFileInfo(file).fileName()}), 5000);
    return true;
  });
}

bool MainWindow::Save() {
  if (file_.Name().isEmpty()) return SaveAs({});
  if (file_.IsChangedOutside()) {
    if (!Confirm(this, Said(words::kOverwriteOutside, {file_.Name()}), words::kOverwriteAnyway,
                 words::kCancel, Default::no))
      return false;
  }
  return WriteTo(file_.Name());
}

bool MainWindow::WriteRuntimeTexts() {
  return Guarded([&] {
    const PageText content = page_->Content();
    PageText::Places places;
    const std::string bytes = content.Bytes(places);
    const SavedPage saved = SavePage(bytes, false);
    if (!saved.IsGood()) {
      Complain(Said(words::kCannotSave) + "\n\n" + FirstErrors(saved.problems, {bytes, places}));
      ShowPanel(*problems_);
      return false;
    }
    TakeOver(saved.bytes, Said(words::kTextsStep));
    return true;
  });
}

void MainWindow::WatchFile() {
  if (!watcher_.files().isEmpty()) watcher_.removePaths(watcher_.files());
  if (!file_.Name().isEmpty()) watcher_.addPath(file_.Name());
}

void MainWindow::FileChangedOutside() {
  WatchFile();  // a file that was replaced is another one to the watcher
  if (asking_ || !file_.IsChangedOutside()) return;
  asking_ = true;
  const bool modified = page_->Document()->isModified();
  const bool reload = Confirm(
      this,
      Said(modified ? words::kChangedOutsideModified : words::kChangedOutside, {file_.Name()}),
      words::kReload, words::kKeep, modified ? Default::no : Default::yes);
  asking_ = false;
  if (reload) {
    Guarded([&] {
      const auto bytes = ReadPage(file_, file_.Name());
      if (!bytes) return false;
      DiscardDraft();
      const int position = source_->textCursor().position();
      Start(*bytes, false);
      source_->GoTo(std::min(position, page_->Document()->characterCount() - 1));
      return true;
    });
  } else {
    file_.AcceptOutside();
    page_->Document()->setModified(true);
  }
}

// --- drafts ---

void MainWindow::WriteDraft() {
  if (!page_->Document()->isModified()) return;
  draftWriter_.start(
      [draft = draft_, text = page_->Content(), name = file_.Name(), known = file_.Known(), this] {
        try {
          draft->Write(text.Bytes(), name, known);
        } catch (const page::FileError& error) {
          const QString message = ToQt(error.Text(UserLanguage()));
          QMetaObject::invokeMethod(
              this, [this, message] { statusBar()->showMessage(Said(words::kNoDraft, {message})); },
              Qt::QueuedConnection);
        }
      });
}

void MainWindow::DiscardDraft() {
  draftTimer_.stop();
  draftWriter_.start([draft = draft_] { draft->Discard(); });
  draftWriter_.waitForDone();
}

bool MainWindow::OfferDrafts() {
  const QLocale locale(UserLanguage() == Language::german ? QLocale::German : QLocale::English);
  for (const LeftDraft& left : Draft::LeftIn(places_.drafts)) {
    const QString name =
        left.pageFile.isEmpty() ? Said(words::kUntitled) : QFileInfo(left.pageFile).fileName();
    PlainMessageBox box(
        QMessageBox::Question,
        Said(words::kDraftFound, {name, locale.toString(left.time, QLocale::ShortFormat)}), this);
    auto* recover = box.addButton(Said(words::kRecover), QMessageBox::AcceptRole);
    auto* discard = box.addButton(Said(words::kDiscard), QMessageBox::DestructiveRole);
    auto* later = box.addButton(Said(words::kLater), QMessageBox::RejectRole);
    box.setDefaultButton(recover);
    box.setEscapeButton(later);
    box.exec();
    if (box.clickedButton() == discard) Draft::Remove(left);
    if (box.clickedButton() != recover || !MayDiscard()) continue;
    const auto bytes = Draft::Read(left);
    if (!bytes) continue;
    DiscardDraft();
    file_.Forget();
    if (!left.pageFile.isEmpty()) file_.Take(left.pageFile, left.known);
    FindCompanions();
    Start(*bytes, true);
    // The draft goes only when it stands in this window's own.
    WriteDraft();
    draftWriter_.waitForDone();
    Draft::Remove(left);
    return true;
  }
  return false;
}

}  // namespace kvo::editor
