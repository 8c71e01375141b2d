// Lists where a name is used; stays open beside the window.
#pragma once

#include <QDialog>
#include <functional>
#include <vector>

class QLabel;
class QProgressBar;
class QPushButton;
class QTreeWidget;

namespace kvo::editor {

// A row of the list.
struct UseRow {
  QString page;   // the file's name
  QString place;  // "line:column"
  QString text;
};

class UsesDialog final : public QDialog {
 public:
  explicit UsesDialog(QWidget* window);

  // Shows that a search runs over this many pages.
  void Begin(const QString& heading, int pages);
  void ShowProgress(int pages);
  void End(const QString& heading, const std::vector<UseRow>& rows, bool mayRename);

  std::function<void(int row)> onGoTo;
  std::function<void()> onRename;
  std::function<void()> onStop;  // the search is cancelled, or the window closes

 protected:
  void showEvent(QShowEvent* event) override;
  void done(int result) override;

 private:
  QLabel* heading_;
  QTreeWidget* list_;
  QProgressBar* progress_;
  QPushButton* cancel_;
  QPushButton* rename_;
};

}  // namespace kvo::editor
