// The preview with its bar and its lists: chooses a record, shows what it makes of the page, and
// lists the page's switches and what is missing. Where there is nothing to see, says what to do.
#pragma once

#include <QToolBar>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>

#include "apps/editor/PreviewWork.h"

class QActionGroup;
class QComboBox;
class QLabel;
class QPushButton;
class QSplitter;
class QStackedWidget;
class QToolButton;

namespace kvo::editor {

class DesignFrame;
class FindingList;
class PreviewView;
class SwitchList;

class PreviewPanel final : public QWidget {
 public:
  explicit PreviewPanel(QWidget* parent);

  void Show(const std::shared_ptr<const PreviewResult>& result);
  // Offers to read the shop's database, which nothing has asked for yet.
  void OfferShop(bool offers);
  // Outlines what a control became; -1 for none.
  void Mark(int control);

  std::function<void()> onVisible;
  std::function<void(std::int64_t)> onRecord;
  std::function<void(int by)> onStep;  // through the records
  std::function<void(const QString& nameOrNumber)> onFind;
  std::function<void(const QString& key, preview::Choice)> onChoice;
  std::function<void()> onReset;  // of all choices
  std::function<void()> onEdit;
  std::function<void()> onShop;
  std::function<void()> onShowProblems;
  // As PreviewList::onPlace.
  std::function<void(std::optional<int> control, int position, bool goes)> onPlace;

  PreviewView& View() { return *view_; }
  DesignFrame& Frame() { return *frame_; }
  SwitchList& Switches() { return *switches_; }
  FindingList& Findings() { return *findings_; }
  QComboBox& Records() { return *records_; }
  // What the empty view says; empty while the mail shows.
  QString StateText() const;
  QString FaceText() const;

 protected:
  void showEvent(QShowEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  QAction* Button(const Localized& text, const QString& icon, const QKeySequence& keys = {});
  void MakeBar();
  QWidget* MakeSwitches();
  void ShowRecords(const PreviewResult& result);
  void ShowFace(const PreviewResult& result);
  void ShowState(const QString& title, const QString& text);
  void FindTyped();
  void ShowDarkTip(bool own);

  QToolBar* bar_;
  QComboBox* records_;
  QLabel* count_;
  QAction* previous_ = nullptr;
  QAction* next_ = nullptr;
  QAction* dark_ = nullptr;
  QAction* shop_ = nullptr;
  QLabel* face_;
  QToolButton* problems_;
  QSplitter* parts_;
  QSplitter* lists_;
  QStackedWidget* middle_;
  PreviewView* view_;
  DesignFrame* frame_;
  QLabel* state_;
  SwitchList* switches_;
  QPushButton* reset_ = nullptr;
  FindingList* findings_;
  std::shared_ptr<const PreviewResult> result_;
};

}  // namespace kvo::editor
