// The list of tools, with a search. Double click or Enter inserts at the caret; dragging inserts
// anywhere.
#pragma once

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

  void Tools(std::vector<Tool> tools);
  const std::vector<Tool>& Tools() const { return tools_; }

  // Shows all tools and selects the first.
  void ForgetSearch();

  std::function<void(int tool)> onInsert;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Filter(const QString& words);

  std::vector<Tool> tools_;
  QLineEdit* search_;
  QListWidget* list_;
};

}  // namespace kvo::editor
