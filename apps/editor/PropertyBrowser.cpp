#include "apps/editor/PropertyBrowser.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

#include "apps/editor/TextDialog.h"
#include "apps/editor/Words.h"
#include "host/qt/QtText.h"

namespace kvo::editor {
namespace {

constexpr int kName = 0;
constexpr int kValue = 1;

// Whether a line edit would change the text.
bool NeedsWindow(const QString& text) {
  for (const QChar c : text)
    if (c.unicode() < 0x20 || c == QChar::LineSeparator || c == QChar::ParagraphSeparator)
      return true;
  return false;
}

QString OneLine(QString text) {
  text.replace("\r\n", "⏎");
  for (QChar& c : text)
    if (NeedsWindow(QString(c))) c = u'⏎';
  return text;
}

}  // namespace

class PropertyBrowser::ValueDelegate final : public QStyledItemDelegate {
 public:
  explicit ValueDelegate(PropertyBrowser& browser)
      : QStyledItemDelegate(&browser), browser_(browser) {}

  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&,
                        const QModelIndex& index) const override {
    const PropertyRow* row = RowAt(index);
    if (index.column() != kValue || row == nullptr) return nullptr;
    QWidget* editor = nullptr;
    if (row->type == PropertyType::flag) {
      auto* flags = new QComboBox(parent);
      flags->addItems({ToQt(ToText(false)), ToQt(ToText(true))});
      connect(flags, &QComboBox::activated, this, [this, flags] {
        auto* self = const_cast<ValueDelegate*>(this);
        Q_EMIT self->commitData(flags);
        Q_EMIT self->closeEditor(flags);
      });
      editor = flags;
    } else {
      auto* line = new QLineEdit(parent);
      line->setFrame(false);
      editor = line;
    }
    editor->setAccessibleName(ToQt(row->name));
    return editor;
  }
  void setEditorData(QWidget* editor, const QModelIndex& index) const override {
    const QString value = ToQt(ToText(browser_.control_->Get(RowAt(index)->name)));
    if (auto* flags = qobject_cast<QComboBox*>(editor))
      flags->setCurrentText(value);
    else
      static_cast<QLineEdit*>(editor)->setText(value);
  }
  void setModelData(QWidget* editor, QAbstractItemModel*, const QModelIndex& index) const override {
    const PropertyRow& row = *RowAt(index);
    const auto* flags = qobject_cast<QComboBox*>(editor);
    const QString text = flags ? flags->currentText() : static_cast<QLineEdit*>(editor)->text();
    const std::string value = FromQt(text);
    if (value != ToText(browser_.control_->Get(row.name)) && browser_.onLet)
      browser_.onLet(std::string(row.name), value);
  }

 private:
  const PropertyRow* RowAt(const QModelIndex& index) const {
    return browser_.RowOf(browser_.tree_->topLevelItem(index.row()));
  }
  PropertyBrowser& browser_;
};

PropertyBrowser::PropertyBrowser(QWidget* parent)
    : QWidget(parent),
      title_(new QLabel(this)),
      tree_(new QTreeWidget(this)),
      reset_(new QPushButton(Text(words::kReset), this)),
      edit_(new QPushButton(Text(words::kEditText), this)) {
  title_->setTextFormat(Qt::PlainText);
  tree_->setColumnCount(2);
  tree_->setHeaderLabels({Text(words::kProperty), Text(words::kValue)});
  tree_->setRootIsDecorated(false);
  tree_->setUniformRowHeights(true);
  tree_->setAlternatingRowColors(true);
  tree_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  tree_->setItemDelegate(new ValueDelegate(*this));
  tree_->setAccessibleName(Text(words::kProperties));
  tree_->header()->setSectionResizeMode(kName, QHeaderView::ResizeToContents);
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(reset_);
  buttons->addWidget(edit_);
  buttons->addStretch();
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(4, 4, 4, 4);
  layout->addWidget(title_);
  layout->addWidget(tree_);
  layout->addLayout(buttons);
  setFocusProxy(tree_);
  connect(tree_, &QTreeWidget::currentItemChanged, this, [this] { UpdateButtons(); });
  connect(tree_, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* item) {
    const PropertyRow* row = RowOf(item);
    if (row == nullptr) return;
    if (NeedsWindow(ToQt(ToText(control_->Get(row->name)))))
      EditLong(*row);
    else
      tree_->editItem(item, kValue);
  });
  connect(reset_, &QPushButton::clicked, this, [this] {
    const PropertyRow* row = RowOf(tree_->currentItem());
    if (row != nullptr && onLet) onLet(std::string(row->name), fresh_->Get(row->name));
  });
  connect(edit_, &QPushButton::clicked, this, [this] {
    if (const PropertyRow* row = RowOf(tree_->currentItem())) EditLong(*row);
  });
  Show(nullptr, nullptr, {});
}

void PropertyBrowser::Show(const std::shared_ptr<Control>& control,
                           const std::shared_ptr<Control>& fresh, const QString& title) {
  const bool sameClass = control && control_ && &control->Class() == &control_->Class();
  control_ = control;
  fresh_ = fresh;
  title_->setText(title);
  setEnabled(control != nullptr);
  if (!sameClass) {
    tree_->clear();
    if (control == nullptr) return UpdateButtons();
    for (const PropertyRow& row : control->Class().properties) {
      if (row.type == PropertyType::object) continue;  // the host's, not the author's
      auto* item = new QTreeWidgetItem(tree_, {ToQt(row.name), {}});
      item->setFlags(item->flags() | Qt::ItemIsEditable);
    }
  }
  for (int at = 0; at < tree_->topLevelItemCount(); ++at) {
    QTreeWidgetItem* item = tree_->topLevelItem(at);
    ShowRow(*item, *RowOf(item));
  }
  UpdateButtons();
}

void PropertyBrowser::ShowRow(QTreeWidgetItem& item, const PropertyRow& row) {
  const Variant value = control_->Get(row.name);
  const QString text = ToQt(ToText(value));
  const bool changed = !(value == fresh_->Get(row.name));
  QFont font = tree_->font();
  font.setBold(changed);
  for (const int column : {kName, kValue}) item.setFont(column, font);
  item.setText(kValue, OneLine(text));
  item.setToolTip(kValue, ToolTipOf(text.left(1000)));
  item.setData(kName, Qt::AccessibleDescriptionRole,
               changed ? Text(words::kChangedProperty) : QString());
}

const PropertyRow* PropertyBrowser::RowOf(const QTreeWidgetItem* item) const {
  if (item == nullptr || control_ == nullptr) return nullptr;
  return control_->Class().FindProperty(FromQt(item->text(kName)));
}

void PropertyBrowser::EditLong(const PropertyRow& row) {
  const std::string old = ToText(control_->Get(row.name));
  const auto edited = EditText(ToQt(row.name), old, this);
  if (edited && *edited != old && onLet) onLet(std::string(row.name), *edited);
}

void PropertyBrowser::UpdateButtons() {
  const PropertyRow* row = RowOf(tree_->currentItem());
  reset_->setEnabled(row != nullptr && !(control_->Get(row->name) == fresh_->Get(row->name)));
  edit_->setEnabled(row != nullptr && row->type == PropertyType::text);
}

}  // namespace kvo::editor
