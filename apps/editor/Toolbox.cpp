#include "apps/editor/Toolbox.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QMimeData>
#include <QStyledItemDelegate>
#include <QVBoxLayout>
#include <algorithm>

#include "apps/editor/Words.h"

namespace kvo::editor {
namespace {

constexpr int kIconSize = 24;

// Draws headings, which are disabled so that keys pass over them, in the colour of tools.
class Painter final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    option->state |= QStyle::State_Enabled;
  }
};

class ToolList final : public QListWidget {
 public:
  explicit ToolList(QWidget* parent) : QListWidget(parent) {
    setItemDelegate(new Painter(this));
    setDragEnabled(true);
    setDragDropMode(QAbstractItemView::DragOnly);
    setIconSize({kIconSize, kIconSize});
    setWordWrap(true);
    setUniformItemSizes(false);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  }

 protected:
  // Keys that would stop at a heading go to the tool below it.
  QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override {
    const QModelIndex to = QListWidget::moveCursor(action, modifiers);
    return to.flags().testFlag(Qt::ItemIsEnabled) ? to : to.siblingAtRow(to.row() + 1);
  }
  QMimeData* mimeData(const QList<QListWidgetItem*>& items) const override {
    auto* mime = new QMimeData;
    mime->setData(kToolType, QByteArray::number(items.front()->data(Qt::UserRole).toInt()));
    return mime;
  }
};

void AddHeading(const std::string& group, QListWidget& list) {
  auto* item = new QListWidgetItem(ToQt(group), &list);
  item->setFlags(Qt::NoItemFlags);
  item->setData(Qt::AccessibleTextRole, Text(words::kToolGroup, {ToQt(group)}));
  QFont font = list.font();
  font.setBold(true);
  item->setFont(font);
}

constexpr int kNoHit = 3;

// Returns how well a tool fits the words of a search: 0 when its name begins with them, 1 when its
// name contains them, 2 when its description or class does. A toolbox file's tools keep their
// order.
int Rank(const Tool& tool, const QStringList& words) {
  if (words.isEmpty()) return tool.field.empty() ? 0 : kNoHit;
  const auto holdWords = [&words](const QString& text) {
    return std::ranges::all_of(
        words, [&](const QString& word) { return text.contains(word, Qt::CaseInsensitive); });
  };
  const QString caption = ToQt(tool.caption);
  const QString field = ToQt(tool.field);
  if (!holdWords(caption + '\n' + ToQt(tool.description) + ' ' + ToQt(tool.contract->name)))
    return kNoHit;
  if (tool.group.empty()) return 0;
  const QString beginning = words.join(' ');
  if (caption.startsWith(beginning, Qt::CaseInsensitive) ||
      field.startsWith(beginning, Qt::CaseInsensitive))
    return 0;
  return holdWords(caption) || holdWords(field) ? 1 : 2;
}

QString IconFile(const ControlClass& contract) {
  return ":/editor/icons/" + ToQt(contract.name) + ".svg";
}

}  // namespace

QIcon IconOf(const ControlClass& contract) { return QIcon(IconFile(contract)); }

Toolbox::Toolbox(QWidget* parent) : Toolbox(parent, words::kToolbox, words::kSearchTools) {}

Toolbox::Toolbox(QWidget* parent, const Localized& name, const Localized& search)
    : QWidget(parent), search_(new QLineEdit(this)), list_(new ToolList(this)) {
  search_->setPlaceholderText(Text(search));
  search_->setAccessibleName(Text(search));
  search_->setClearButtonEnabled(true);
  search_->installEventFilter(this);
  list_->setAccessibleName(Text(name));
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
  icons_.clear();
  list_->clear();
  Filter(search_->text());
}

void Toolbox::ForgetSearch() {
  list_->clear();
  search_->clear();
  Filter({});
}

void Toolbox::AddItem(int number) {
  const Tool& tool = tools_[static_cast<std::size_t>(number)];
  const QString caption = ToQt(tool.caption);
  const QString description = ToQt(tool.description);
  const QString file = tool.icon.empty() ? IconFile(*tool.contract) : ToQt(tool.icon);
  if (!icons_.contains(file)) icons_[file] = QIcon(file);
  auto* item = new QListWidgetItem(
      icons_[file], description.isEmpty() ? caption : caption + '\n' + description, list_);
  item->setData(Qt::UserRole, number);
  item->setData(Qt::AccessibleTextRole, caption + ". " + description);
  item->setData(Qt::AccessibleDescriptionRole, ToQt(tool.group));
  item->setToolTip(ToQt(tool.contract->name));
}

void Toolbox::Filter(const QString& words) {
  const QStringList wanted = words.split(' ', Qt::SkipEmptyParts);
  std::vector<std::pair<int, int>> hits;  // how good, and the tool's number
  for (int number = 0; const Tool& tool : tools_) {
    const int rank = Rank(tool, wanted);
    if (rank != kNoHit) hits.emplace_back(rank, number);
    ++number;
  }
  std::ranges::sort(hits);
  const QListWidgetItem* chosen = list_->currentItem();
  const int before = chosen == nullptr ? -1 : chosen->data(Qt::UserRole).toInt();
  list_->clear();
  QListWidgetItem* current = nullptr;
  std::string group;
  for (const auto& [rank, number] : hits) {
    const Tool& tool = tools_[static_cast<std::size_t>(number)];
    if (wanted.isEmpty() && tool.group != group) AddHeading(tool.group, *list_);
    group = tool.group;
    AddItem(number);
    // Keeps the chosen tool unless another one fits better.
    if (current == nullptr || (number == before && rank == hits.front().first))
      current = list_->item(list_->count() - 1);
  }
  list_->setCurrentItem(current);
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
