#include "apps/editor/UsesPanel.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "apps/editor/EmptyHint.h"
#include "apps/editor/Words.h"

namespace kvo::editor {

UsesPanel::UsesPanel(QWidget* parent)
    : QWidget(parent),
      heading_(new QLabel(this)),
      list_(new QTreeWidget(this)),
      progress_(new QProgressBar(this)),
      cancel_(new QPushButton(Text(words::kCancel), this)),
      rename_(new QPushButton(Text(words::kRenameUses), this)) {
  constexpr int kMargin = 4;
  heading_->setTextFormat(Qt::PlainText);
  heading_->setWordWrap(true);
  list_->setHeaderLabels({Text(words::kUsePage), Text(words::kPlace), Text(words::kUse)});
  list_->setRootIsDecorated(false);
  list_->setUniformRowHeights(true);
  list_->setAllColumnsShowFocus(true);
  list_->setAccessibleName(Text(words::kWhereUsedTitle));
  new EmptyHint(*list_, words::kNoUses);
  const auto show = [this](QTreeWidgetItem* item, bool goes) {
    if (onShow) onShow(list_->indexOfTopLevelItem(item), goes);
  };
  connect(list_, &QTreeWidget::itemClicked, this,
          [show](QTreeWidgetItem* item) { show(item, false); });
  connect(list_, &QTreeWidget::itemActivated, this,
          [show](QTreeWidgetItem* item) { show(item, true); });
  connect(rename_, &QPushButton::clicked, this, [this] { onRename(); });
  connect(cancel_, &QPushButton::clicked, this, [this] { onStop(); });
  progress_->hide();
  cancel_->hide();
  rename_->setEnabled(false);
  setFocusProxy(list_);

  auto* row = new QHBoxLayout;
  row->setContentsMargins(kMargin, kMargin, kMargin, 0);
  row->addWidget(heading_, 1);
  row->addWidget(progress_);
  row->addWidget(cancel_);
  row->addWidget(rename_);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addLayout(row);
  column->addWidget(list_, 1);
}

void UsesPanel::Show(const std::vector<UseRow>& rows) {
  list_->clear();
  QList<QTreeWidgetItem*> items;
  for (const UseRow& row : rows) {
    auto* item = new QTreeWidgetItem({row.page, row.place, row.text});
    item->setToolTip(2, ToolTipOf(row.text));
    items.append(item);
  }
  list_->addTopLevelItems(items);
  list_->resizeColumnToContents(0);
  list_->resizeColumnToContents(1);
  if (!items.isEmpty()) list_->setCurrentItem(items.front());
}

void UsesPanel::Begin(const QString& heading) {
  heading_->setText(heading);
  progress_->setRange(0, 0);  // the folders are searched first
  progress_->show();
  cancel_->show();
  rename_->setEnabled(false);
}

void UsesPanel::ShowProgress(int pages, int of) {
  progress_->setRange(0, of);
  progress_->setValue(pages);
}

void UsesPanel::End(const QString& heading, bool mayRename) {
  heading_->setText(heading);
  progress_->hide();
  cancel_->hide();
  rename_->setEnabled(mayRename);
}

void UsesPanel::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && onLeave) return onLeave();
  QWidget::keyPressEvent(event);
}

}  // namespace kvo::editor
