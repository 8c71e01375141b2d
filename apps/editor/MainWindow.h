// The editor's window: source and design view of one page, and the panels around them.
#pragma once

#include <QFileSystemWatcher>
#include <QMainWindow>
#include <QThreadPool>
#include <QTimer>
#include <memory>
#include <optional>

#include "apps/editor/Analysis.h"
#include "apps/editor/ControlEditing.h"
#include "apps/editor/Drafts.h"
#include "apps/editor/PageDocument.h"
#include "apps/editor/PageFile.h"

class QDockWidget;
class QLabel;
class QSplitter;

namespace kvo::editor {

class DesignView;
class FindBar;
class OutlinePanel;
class SourceLines;
class ProblemsPanel;
class PropertyBrowser;
class TextPanel;
class Toolbox;

class MainWindow final : public QMainWindow {
 public:
  struct Places {
    QString drafts;  // the folder
    office::ConnectionFactory connections;
  };
  MainWindow(QtPlatform& platform, Places places);
  ~MainWindow() override;

  // --- what the menus do; each asks and tells by itself ---
  void New();
  // False when it could not be read, or the user kept what is open.
  bool Open(const QString& file);
  bool Save();
  bool SaveAs(const QString& file);
  bool Publish(const QString& file);
  // Puts the runtime text of every control into the page, as saving does.
  bool WriteRuntimeTexts();
  // Offers what a crash left behind; answers whether something was taken.
  bool OfferDrafts();
  bool UseOffice(const QString& file);
  bool UseToolbox(const QString& file);

  PageDocument& Page() { return *page_; }
  SourceEdit& Source() { return *source_; }
  DesignView& Design() { return *design_; }
  Toolbox& Tools() { return *toolbox_; }
  PropertyBrowser& Properties() { return *browser_; }
  ControlEditing& Controls() { return *controls_; }
  FindBar& Finder() { return *find_; }
  ProblemsPanel& Problems() { return *problems_; }
  TextPanel& RuntimeText() { return *runtime_; }
  TextPanel& Output() { return *output_; }
  const PageFile& File() const { return file_; }
  // The latest; nullptr before the first.
  const std::shared_ptr<const Analysis>& Analysed() const { return analysis_; }
  std::function<void()> onAnalysed;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  struct Panel {
    QDockWidget* dock;
    QWidget* widget;
  };
  QDockWidget* Dock(const Localized& title, const char* name, QWidget* content,
                    Qt::DockWidgetArea area);
  QAction* Action(QMenu& menu, const Localized& text, const QKeySequence& keys,
                  std::function<void()> run);
  void MakeMenus();
  void MakeFileMenu();
  void MakeEditMenu();
  void MakeControlMenu();
  void MakeViewMenu();
  void RestoreWindow();
  void ShowRecent();
  void Remember(const QString& file);

  void PageChanged();
  void Analysed(const std::shared_ptr<const Analysis>& analysis);
  void RequestAnalysis();
  void CaretMoved();
  void ShowControl();
  void MarkControl();
  void ShowSteps();
  void ShowTitle();
  void ShowStatus();
  void NextPanel(bool backwards);
  void StepControl(bool backwards);
  void GoToIndex(int index, bool open);
  void RecognizeControls();

  void Start(const std::string& bytes, bool modified);
  bool MayDiscard();
  // Says the first errors of the page, with their places in the source view.
  static QString FirstErrors(const page::Problems& problems, SourceLines lines);
  // What is to be written; nothing when the user gave up.
  std::optional<std::string> BytesToSave();
  bool WriteTo(const QString& file);
  // Without a name: undone together with the step before.
  void TakeOver(const std::string& saved, const QString& step);
  void FileChangedOutside();
  void WatchFile();
  void WriteDraft();
  void DiscardDraft();
  void FindCompanions();
  void Complain(const QString& text);
  // Nothing when the page is in an encoding that cannot be edited, which is then told.
  std::optional<std::string> ReadPage(PageFile& file, const QString& name);
  // Brings a panel to the front, with the keyboard.
  void ShowPanel(QWidget& panel);
  // Does something with files; what it throws is told to the user, and the answer is then false.
  bool Guarded(const std::function<bool()>& work);

  QtPlatform& platform_;
  Places places_;
  PageDocument* page_;
  SourceEdit* source_;
  DesignView* design_;
  FindBar* find_;
  QSplitter* splitter_;
  Toolbox* toolbox_;
  OutlinePanel* outline_;
  ProblemsPanel* problems_;
  PropertyBrowser* browser_;
  TextPanel* runtime_;
  TextPanel* output_;
  std::vector<Panel> panels_;  // in the order in which F6 goes through them
  QLabel* placeLabel_;
  QLabel* encodingLabel_;
  QLabel* problemLabel_;
  QAction* undo_ = nullptr;
  QAction* redo_ = nullptr;
  QAction* openPages_ = nullptr;
  QMenu* recent_ = nullptr;

  std::unique_ptr<ControlEditing> controls_;
  PageFile file_;
  std::shared_ptr<office::Office> office_;
  QString officeFile_;
  QFileSystemWatcher watcher_;
  bool asking_ = false;  // about a change outside

  std::shared_ptr<const Analysis> analysis_;
  bool newPage_ = true;
  QTimer analysisTimer_;
  QTimer draftTimer_;
  QTimer outsideTimer_;
  QThreadPool draftWriter_;  // one thread: drafts are written in their order
  std::shared_ptr<Draft> draft_;
  std::unique_ptr<Analyst> analyst_;  // ends first
};

}  // namespace kvo::editor
