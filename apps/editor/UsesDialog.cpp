#include "apps/editor/UsesDialog.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QShowEvent>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "apps/editor/FocusFrame.h"
#include "apps/editor/Words.h"
#include "host/qt/Messages.h"

namespace kvo::editor {

UsesDialog::UsesDialog(QWidget* window)
    : QDialog(window),
      heading_(new QLabel(this)),
      list_(new QTreeWidget(this)),
      progress_(new QProgressBar(this)),
      cancel_(new QPushButton(Text(words::kCancel), this)),
      rename_(new QPushButton(Text(words::kRenameUses), this)) {
  setWindowTitle(Text(words::kWhereUsedTitle));
  resize(640, 300);
  heading_->setTextFormat(Qt::PlainText);
  heading_->setWordWrap(true);
  list_->setHeaderLabels({Text(words::kUsePage), Text(words::kPlace), Text(words::kUse)});
  list_->setRootIsDecorated(false);
  list_->setUniformRowHeights(true);
  list_->setAllColumnsShowFocus(true);
  list_->setAccessibleName(Text(words::kWhereUsedTitle));
  const auto go = [this](QTreeWidgetItem* item) {
    if (onGoTo) onGoTo(list_->indexOfTopLevelItem(item));
  };
  connect(list_, &QTreeWidget::itemClicked, this, go);
  connect(list_, &QTreeWidget::itemActivated, this, go);
  // Enter in the list goes to a place.
  for (QPushButton* button : {cancel_, rename_}) button->setAutoDefault(false);
  connect(rename_, &QPushButton::clicked, this, [this] { onRename(); });
  connect(cancel_, &QPushButton::clicked, this, [this] { onStop(); });
  auto* close = new QPushButton(Text(words::kClose), this);
  close->setAutoDefault(false);
  connect(close, &QPushButton::clicked, this, &QDialog::reject);

  auto* column = new QVBoxLayout(this);
  column->addWidget(heading_);
  column->addWidget(new FocusFrame(list_, this));
  auto* row = new QHBoxLayout;
  row->addWidget(progress_);
  row->addWidget(cancel_);
  row->addStretch();
  row->addWidget(rename_);
  row->addWidget(close);
  column->addLayout(row);
}

void UsesDialog::Begin(const QString& heading, int pages) {
  heading_->setText(heading);
  list_->clear();
  progress_->setRange(0, pages);
  progress_->setValue(0);
  progress_->show();
  cancel_->show();
  rename_->setEnabled(false);
}

void UsesDialog::ShowProgress(int pages) { progress_->setValue(pages); }

void UsesDialog::End(const QString& heading, const std::vector<UseRow>& rows, bool mayRename) {
  heading_->setText(heading);
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
  progress_->hide();
  cancel_->hide();
  rename_->setEnabled(mayRename);
  list_->setFocus();
}

// Opens at the lower edge of the window, where it hides little of the page.
void UsesDialog::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  if (event->spontaneous()) return;
  const QRect window = parentWidget()->window()->geometry();
  move(window.center().x() - width() / 2, window.bottom() - height() - 40);
}

void UsesDialog::done(int result) {
  onStop();
  QDialog::done(result);
}

}  // namespace kvo::editor
