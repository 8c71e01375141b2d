#include "apps/editor/ToolBar.h"

#include <QAction>
#include <QTextDocument>
#include <QToolButton>

#include "apps/editor/Icons.h"
#include "apps/editor/Words.h"

namespace kvo::editor {
namespace {

constexpr int kButtonIconSize = 20;

// The text of a menu entry without its access key and dots.
QString PlainText(const QAction& action) {
  QString text = action.text().remove('&');
  if (text.endsWith(" …")) text.chop(2);
  return text;
}

void ShowTip(QAction& action) {
  const QString keys = action.shortcut().toString(QKeySequence::NativeText);
  const QString plain = PlainText(action);
  QString tip = keys.isEmpty() ? plain : plain + " (" + keys + ')';
  if (Qt::mightBeRichText(tip)) tip = ToolTipOf(tip);
  if (action.toolTip() != tip) action.setToolTip(tip);
}

}  // namespace

ToolBar::ToolBar(QWidget* parent) : QToolBar(Text(words::kToolBar), parent) {
  setObjectName("toolbar");
  setIconSize({kButtonIconSize, kButtonIconSize});
  for (QAction*& end : ends_) {
    end = addSeparator();
    end->setVisible(false);
  }
}

void ToolBar::Add(Group group, QAction& action, const QString& icon, Caption caption) {
  action.setIcon(LineIcon(icon));
  insertAction(ends_[group], &action);
  if (group + 1 < groupCount) ends_[group]->setVisible(true);
  if (caption == Caption::shown) {
    action.setIconText(PlainText(action));
    if (auto* button = qobject_cast<QToolButton*>(widgetForAction(&action)))
      button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  }
  connect(&action, &QAction::changed, this, [&action] { ShowTip(action); });
  ShowTip(action);
}

}  // namespace kvo::editor
