// The panel that lists where a name is used.
#pragma once

#include <QWidget>
#include <functional>
#include <vector>

class QLabel;
class QProgressBar;
class QPushButton;
class QTreeWidget;

namespace kvo::editor {

// A row of the list.
struct UseRow {
  QString page;   // the file's path below the folder
  QString place;  // "line:column"
  QString text;
};

class UsesPanel final : public QWidget {
 public:
  explicit UsesPanel(QWidget* parent);

  void Show(const std::vector<UseRow>& rows);
  // Shows that a search runs.
  void Begin(const QString& heading);
  void ShowProgress(int pages, int of);
  void End(const QString& heading, bool mayRename);

  // The keyboard focus stays in the list when a row is clicked, and goes to its place with Enter.
  std::function<void(int row, bool goes)> onShow;
  std::function<void()> onRename;
  std::function<void()> onStop;
  std::function<void()> onLeave;  // Escape

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QLabel* heading_;
  QTreeWidget* list_;
  QProgressBar* progress_;
  QPushButton* cancel_;
  QPushButton* rename_;
};

}  // namespace kvo::editor
