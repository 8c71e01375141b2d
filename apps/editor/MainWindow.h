// The editor's window: source and design view of one page, and the panels around them.
#pragma once

#include <QHash>
#include <QMainWindow>
#include <QTimer>
#include <memory>

#include "apps/editor/Analysis.h"
#include "apps/editor/ControlEditing.h"
#include "apps/editor/DesignEditing.h"
#include "apps/editor/Session.h"

class QActionGroup;
class QDockWidget;
class QLabel;
class QStackedWidget;
class QToolButton;

namespace kvo::editor {

class DesignFrame;
class DesignView;
class FindBar;
class Mending;
class OutlinePanel;
class PreviewPanel;
class Previewing;
class ProblemsPanel;
class PropertyBrowser;
class TextPanel;
class ToolBar;
class Toolbox;
class UsesPanel;
class Views;
class Welcome;
class WhereUsed;

class MainWindow final : public QMainWindow, public SessionUser {
 public:
  MainWindow(QtPlatform& platform, Session::Places places);
  ~MainWindow() override;

  bool UseToolbox(const QString& file);  // empty: the built-in one
  // Shows the welcome page until a page is opened.
  void ShowWelcome();

  Session& Work() { return *session_; }
  PageDocument& Page() { return session_->Page(); }
  SourceEdit& Source() { return *source_; }
  DesignView& Design() { return *design_; }
  DesignFrame& Frame() { return *frame_; }
  PreviewPanel& Preview() { return *preview_; }
  Previewing& Previews() { return *previewing_; }
  Views& Middle() { return *views_; }
  Welcome& Beginning() { return *welcome_; }
  DesignEditing& Writing() { return *editing_; }
  Toolbox& Tools() { return *toolbox_; }
  PropertyBrowser& Properties() { return *browser_; }
  ControlEditing& Controls() { return *controls_; }
  FindBar& Finder() { return *find_; }
  WhereUsed& Uses() { return *uses_; }
  ProblemsPanel& Problems() { return *problems_; }
  UsesPanel& UsesList() { return *usesList_; }
  TextPanel& RuntimeText() { return *runtime_; }
  TextPanel& Output() { return *output_; }
  // The latest analysis; nullptr before the first.
  const std::shared_ptr<const Analysis>& Analysed() const { return analysis_; }
  std::function<void()> onAnalysed;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;
  bool event(QEvent* event) override;

 private:
  struct Panel {
    QDockWidget* dock;
    QWidget* widget;
    QAction* shows = nullptr;  // the menu entry; checked unless hidden or behind another panel
  };
  QDockWidget* Dock(const Localized& title, const char* name, QWidget* content,
                    Qt::DockWidgetArea area);
  QAction* Action(QMenu& menu, const Localized& text, const QKeySequence& keys,
                  std::function<void()> run);
  void MakeStatusBar();
  void MakeMenus();
  void MakeFileMenu();
  void MakeEditMenu();
  void MakeFormatMenu();
  void MakeControlMenu();
  void MakeViewMenu();
  void AddLayouts(QMenu& menu);
  void AddPreview(QMenu& menu);
  void AddWidths(QMenu& menu);
  void AddPanels(QMenu& menu);
  void MakeWelcome();
  void RestoreWindow();
  void TakeOver();
  void AddTemplates(QMenu& menu);
  void ShowRecent();

  std::size_t Ask(const Question& question) override;
  void Tell(const QString& text) override;
  void Note(const QString& text, std::chrono::milliseconds time) override;
  QString ChooseFile(const Localized& title, const QString& proposed) override;
  void ShowProblems() override;
  void PageChanged() override;
  void PageEnds() override;
  void PageStarted(bool sameFile) override;
  void FileNamed() override;
  void FolderChanged() override;
  void OfficeChanged() override;

  void Analysed(const std::shared_ptr<const Analysis>& analysis);
  void RequestAnalysis();
  void CaretMoved();
  void ShowControl();
  void MarkControl();
  void ShowSteps();
  void ShowTitle();
  void ShowStatus();
  void ChooseAndOpen();
  void LeaveWelcome();
  bool IsWelcoming() const;
  void NextPanel(bool backwards);
  void StepControl(bool backwards);
  void GoToIndex(int index, bool open);
  // Shows a place that the preview names; `goes` moves the keyboard focus there.
  void GoToPlace(std::optional<int> control, int position, bool goes);
  // The frame that the menu's zoom is for.
  DesignFrame& ActiveFrame();
  // Shows a place in the views that are there, and moves the keyboard focus to one of them.
  void GoTo(int position);
  void FocusPage();
  void NeedSource();
  const Panel& PanelOf(const QWidget& widget) const;
  void Insert(int tool);
  void InsertPicture();
  void EditLink();
  void ShowFormats(const DesignEditing::State& state);
  // Brings a panel to the front and gives it the keyboard focus.
  void ShowPanel(QWidget& panel);

  std::unique_ptr<Session> session_;
  SourceEdit* source_;
  DesignView* design_;
  DesignFrame* frame_;
  PreviewPanel* preview_;
  FindBar* find_;
  Views* views_ = nullptr;
  Welcome* welcome_;
  QStackedWidget* middle_;
  ToolBar* toolBar_;
  Toolbox* toolbox_;
  OutlinePanel* outline_;
  ProblemsPanel* problems_;
  UsesPanel* usesList_;
  PropertyBrowser* browser_;
  TextPanel* runtime_;
  TextPanel* output_;
  bool builtInTools_ = true;
  std::vector<Panel> panels_;  // in F6 order
  QLabel* placeLabel_;
  QLabel* encodingLabel_;
  QLabel* zoomLabel_;
  QToolButton* problemCount_;
  QAction* undo_ = nullptr;
  QAction* redo_ = nullptr;
  QAction* openPages_ = nullptr;
  QAction* whereUsed_ = nullptr;
  std::vector<QWidget*> pageStatus_;
  std::vector<QAction*> pageActions_;  // those that need a page
  // Restored when the welcome page goes away.
  QByteArray panelsBefore_;
  std::vector<QAction*> disabled_;
  QMenu* recent_ = nullptr;
  QActionGroup* widths_ = nullptr;  // of the design view

  std::unique_ptr<ControlEditing> controls_;
  std::unique_ptr<DesignEditing> editing_;
  std::unique_ptr<Mending> mending_;
  std::unique_ptr<Previewing> previewing_;
  std::unique_ptr<WhereUsed> uses_;
  QHash<QString, QAction*> formats_;  // by the names of the design view's commands
  std::optional<QString> link_;       // the address at the caret of the design view

  std::shared_ptr<const Analysis> analysis_;
  bool newPage_ = true;
  int caret_ = 0;  // its position when the previous page ended
  QTimer analysisTimer_;
  std::unique_ptr<Analyst> analyst_;  // destroyed first
};

}  // namespace kvo::editor
