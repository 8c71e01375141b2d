// The tool bar: actions of the menus as buttons, in groups.
#pragma once

#include <QToolBar>
#include <array>

namespace kvo::editor {

class ToolBar final : public QToolBar {
 public:
  // From left to right; a group without buttons takes no room.
  enum Group { files, steps, formats, controls, publishing, widths, groupCount };
  enum class Caption { hidden, shown };

  explicit ToolBar(QWidget* parent);

  // Adds a button at the end of its group, with the icon `resources/icons/ICON.svg`. Its tool tip
  // names the action and its keys.
  void Add(Group group, QAction& action, const QString& icon, Caption caption = Caption::hidden);

 private:
  std::array<QAction*, groupCount> ends_{};  // the separator behind each group
};

}  // namespace kvo::editor
