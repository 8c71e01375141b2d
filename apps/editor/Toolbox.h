// The list of tools in their groups, with a search that also finds fields. Double click or Enter
// inserts at the caret; dragging inserts anywhere.
#pragma once

#include <QHash>
#include <QIcon>
#include <QWidget>
#include <functional>
#include <vector>

#include "apps/editor/ToolboxFile.h"

class QLineEdit;
class QListWidget;

namespace kvo::editor {

// The type of dragged data: the number of a tool.
inline constexpr char kToolType[] = "application/x-kvo-tool";

QIcon IconOf(const ControlClass& contract);

class Toolbox final : public QWidget {
 public:
  explicit Toolbox(QWidget* parent);
  // The list and its search under other names.
  Toolbox(QWidget* parent, const Localized& name, const Localized& search);

  void Tools(std::vector<Tool> tools);
  const std::vector<Tool>& Tools() const { return tools_; }

  // Shows all tools and selects the first.
  void ForgetSearch();

  std::function<void(int tool)> onInsert;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  // Shows what a search finds, the best first; without one, the groups.
  void Filter(const QString& words);
  void AddItem(int number);

  std::vector<Tool> tools_;
  QHash<QString, QIcon> icons_;  // by their files
  QLineEdit* search_;
  QListWidget* list_;
};

}  // namespace kvo::editor
