// The welcome page, shown before a page is open: ways to begin one, and the recent files.
#pragma once

#include <QScrollArea>
#include <functional>

class QLabel;
class QListWidget;

namespace kvo::editor {

class Welcome final : public QScrollArea {
 public:
  explicit Welcome(QWidget* parent);

  // Reads the recent files anew.
  void Refresh();

  std::function<void()> onNew;
  std::function<void()> onOpen;
  std::function<void(const QByteArray& page)> onTemplate;
  std::function<void(const QString& file)> onRecent;

 private:
  QWidget* Beginnings();
  QWidget* RecentFiles();

  QListWidget* recent_;
  QLabel* noRecent_;
};

}  // namespace kvo::editor
