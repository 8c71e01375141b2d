#include "apps/editor/Toolbox.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QMimeData>
#include <QVBoxLayout>
#include <algorithm>

#include "apps/editor/Words.h"

namespace kvo::editor {
namespace {

constexpr int kIconSize = 24;

class ToolList final : public QListWidget {
 public:
  explicit ToolList(QWidget* parent) : QListWidget(parent) {
    setDragEnabled(true);
    setDragDropMode(QAbstractItemView::DragOnly);
    setIconSize({kIconSize, kIconSize});
    setWordWrap(true);
    setUniformItemSizes(false);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  }

 protected:
  QMimeData* mimeData(const QList<QListWidgetItem*>& items) const override {
    auto* mime = new QMimeData;
    mime->setData(kToolType, QByteArray::number(items.front()->data(Qt::UserRole).toInt()));
    return mime;
  }
};

}  // namespace

QIcon IconOf(const ControlClass& contract) {
  return QIcon(":/editor/icons/" + ToQt(contract.name) + ".svg");
}

Toolbox::Toolbox(QWidget* parent)
    : QWidget(parent), search_(new QLineEdit(this)), list_(new ToolList(this)) {
  search_->setPlaceholderText(Text(words::kSearchTools));
  search_->setAccessibleName(Text(words::kSearchTools));
  search_->setClearButtonEnabled(true);
  search_->installEventFilter(this);
  list_->setAccessibleName(Text(words::kToolbox));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(4, 4, 4, 4);
  layout->addWidget(search_);
  layout->addWidget(list_);
  setFocusProxy(search_);
  connect(search_, &QLineEdit::textChanged, this, &Toolbox::Filter);
  connect(list_, &QListWidget::itemActivated, this, [this](QListWidgetItem* item) {
    if (onInsert) onInsert(item->data(Qt::UserRole).toInt());
  });
}

void Toolbox::Tools(std::vector<Tool> tools) {
  tools_ = std::move(tools);
  list_->clear();
  for (std::size_t number = 0; number < tools_.size(); ++number) {
    const Tool& tool = tools_[number];
    const QString caption = ToQt(tool.caption);
    const QString description = ToQt(tool.description);
    const QIcon icon = tool.icon.empty() ? IconOf(*tool.contract) : QIcon(ToQt(tool.icon));
    auto* item = new QListWidgetItem(
        icon, description.isEmpty() ? caption : caption + '\n' + description, list_);
    item->setData(Qt::UserRole, static_cast<int>(number));
    item->setData(Qt::AccessibleTextRole, caption + ". " + description);
    item->setToolTip(ToQt(tool.contract->name));
  }
  Filter(search_->text());
}

void Toolbox::ForgetSearch() {
  search_->clear();
  list_->setCurrentRow(0);
}

void Toolbox::Filter(const QString& words) {
  QListWidgetItem* first = nullptr;
  for (int row = 0; row < list_->count(); ++row) {
    QListWidgetItem* item = list_->item(row);
    const QString text = item->text() + ' ' + item->toolTip();
    const QStringList wanted = words.split(' ', Qt::SkipEmptyParts);
    const bool shows = std::ranges::all_of(
        wanted, [&](const QString& word) { return text.contains(word, Qt::CaseInsensitive); });
    item->setHidden(!shows);
    if (shows && first == nullptr) first = item;
  }
  if (first != nullptr && (list_->currentItem() == nullptr || list_->currentItem()->isHidden()))
    list_->setCurrentItem(first);
}

// Passes keys from the search to the list.
bool Toolbox::eventFilter(QObject* watched, QEvent* event) {
  if (watched != search_ || event->type() != QEvent::KeyPress)
    return QWidget::eventFilter(watched, event);
  const int key = static_cast<QKeyEvent*>(event)->key();
  QListWidgetItem* current = list_->currentItem();
  if ((key == Qt::Key_Return || key == Qt::Key_Enter) && current && !current->isHidden()) {
    if (onInsert) onInsert(current->data(Qt::UserRole).toInt());
    return true;
  }
  if (key == Qt::Key_Down || key == Qt::Key_Up) {
    list_->setFocus();
    QCoreApplication::sendEvent(list_, event);
    return true;
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace kvo::editor
