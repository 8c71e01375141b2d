#include "apps/editor/PropertyBrowser.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "apps/editor/TextDialog.h"
#include "apps/editor/ToolboxFile.h"
#include "apps/editor/Words.h"
#include "common/text/modGlobal.h"
#include "host/qt/QtText.h"
#include "host/qt/Swatch.h"

namespace kvo::editor {
namespace {

constexpr int kName = 0;
constexpr int kValue = 1;
// The property's name, in the first column; empty for the id, invalid for the group.
constexpr int kProperty = Qt::UserRole;

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

// An empty frame where a colour row shows its swatch.
QPixmap NoColorPicture(const QWidget& on) {
  QPixmap picture = SwatchPicture({}, on);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setPen(on.palette().color(QPalette::PlaceholderText));
  const int side = SwatchSize(on) - 1;
  painter.drawRect(0, 0, side, side);
  return picture;
}

bool IsId(const QTreeWidgetItem& item) {
  const QVariant property = item.data(kName, kProperty);
  return property.isValid() && property.toString().isEmpty();
}

}  // namespace

// Rows are edited by Enter, F2, Space, a click on the value or a double click on the caption.
class PropertyBrowser::Tree final : public QTreeWidget {
 public:
  Tree(PropertyBrowser& browser) : QTreeWidget(&browser), browser_(browser) {
    setColumnCount(2);
    setHeaderLabels({Text(words::kProperty), Text(words::kValue)});
    setIndentation(12);
    setUniformRowHeights(true);
    setAlternatingRowColors(true);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setExpandsOnDoubleClick(false);
    setItemDelegate(new ValueDelegate(browser, this));
    setAccessibleName(Text(words::kProperties));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    connect(this, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem* item, int column) {
      if (column == kValue) browser_.Edit(*item);
    });
    connect(this, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem* item, int column) {
      if (column == kName) browser_.Edit(*item);
    });
  }

  // Gives the captions the width that they need, as long as the values keep some.
  void FitColumns() {
    setColumnWidth(kName, std::min(sizeHintForColumn(kName), viewport()->width() * 3 / 5));
  }

 protected:
  // Stays in its row. Otherwise Tab would open a line in the next one, whatever input that has.
  void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint) override {
    QTreeWidget::closeEditor(editor, QAbstractItemDelegate::NoHint);
  }
  void resizeEvent(QResizeEvent* event) override {
    QTreeWidget::resizeEvent(event);
    FitColumns();
  }
  void keyPressEvent(QKeyEvent* event) override {
    switch (event->key()) {
      case Qt::Key_Return:
      case Qt::Key_Enter:
      case Qt::Key_F2:
      case Qt::Key_Space:
        // An open input passes on the keys that close it.
        if ((state() != EditingState || hasFocus()) && currentItem() != nullptr)
          return browser_.Edit(*currentItem());
        break;
      default:
        break;
    }
    QTreeWidget::keyPressEvent(event);
  }

 private:
  PropertyBrowser& browser_;
};

PropertyBrowser::PropertyBrowser(QWidget* parent)
    : QWidget(parent),
      title_(new QLabel(this)),
      tree_(new Tree(*this)),
      help_(new QLabel(this)),
      reset_(new QPushButton(Text(words::kReset), this)),
      edit_(new QPushButton(Text(words::kEditText), this)) {
  for (QLabel* label : {title_, help_}) {
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
  }
  help_->setObjectName("help");
  help_->setAlignment(Qt::AlignTop);
  constexpr int kHelpLines = 2;
  help_->setMinimumHeight(kHelpLines * help_->fontMetrics().lineSpacing());
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(reset_);
  buttons->addWidget(edit_);
  buttons->addStretch();
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(4, 4, 4, 4);
  layout->addWidget(title_);
  layout->addWidget(tree_, 1);
  layout->addWidget(help_);
  layout->addLayout(buttons);
  setFocusProxy(tree_);
  connect(tree_, &QTreeWidget::currentItemChanged, this, [this] { ShowCurrent(); });
  for (const bool shows : {true, false})
    connect(tree_, shows ? &QTreeWidget::itemExpanded : &QTreeWidget::itemCollapsed, this,
            [this, shows] { showsAdvanced_ = shows; });
  connect(reset_, &QPushButton::clicked, this, [this] {
    const PropertyRow* row = RowOf(tree_->currentItem());
    if (row != nullptr && onLet) onLet(std::string(row->name), fresh_->Get(row->name));
  });
  connect(edit_, &QPushButton::clicked, this, [this] {
    if (const PropertyRow* row = RowOf(tree_->currentItem())) EditLong(*row);
  });
  ShowNone({});
}

void PropertyBrowser::ShowNone(const QString& text) {
  control_ = nullptr;
  title_->setText(text);
  title_->setToolTip({});
  tree_->clear();
  setEnabled(false);
  ShowCurrent();
}

void PropertyBrowser::Show(const std::shared_ptr<Control>& control,
                           const std::shared_ptr<Control>& fresh, const QString& id,
                           const std::shared_ptr<office::Office>& office) {
  const ControlClass& contract = control->Class();
  const bool sameClass = control_ && &contract == &control_->Class();
  control_ = control;
  fresh_ = fresh;
  office_ = office;
  id_ = id;
  title_->setText(ToQt(contract.title.In(UserLanguage())));
  title_->setToolTip(ToQt(contract.name));
  setEnabled(true);
  if (!sameClass) MakeRows();
  for (QTreeWidgetItemIterator row(tree_); *row != nullptr; ++row) ShowRow(**row);
  if (!sameClass) tree_->FitColumns();
  ShowCurrent();
}

void PropertyBrowser::MakeRows() {
  const bool expanded = showsAdvanced_;
  tree_->clear();
  auto* advanced = new QTreeWidgetItem({Text(words::kAdvanced), {}});
  const auto add = [](auto* parent, const Localized& caption, const QString& property) {
    auto* item = new QTreeWidgetItem(parent, {Text(caption), {}});
    item->setFlags(item->flags() | Qt::ItemIsEditable);
    item->setData(kName, kProperty, property);
    return item;
  };
  add(tree_, words::kId, QString(""))->setToolTip(kName, Text(words::kIdHelp));
  for (const PropertyRow& row : control_->Class().properties) {
    if (row.type == PropertyType::object) continue;  // the host's, not the author's
    const PropertyInput& input = row.input;
    QTreeWidgetItem* item = input.advanced ? add(advanced, row.Caption(), ToQt(row.name))
                                           : add(tree_, row.Caption(), ToQt(row.name));
    item->setToolTip(
        kName, ToolTipOf(Text(row.Caption()) + " (" + ToQt(row.name) + ")\n" + Text(input.help)));
  }
  tree_->addTopLevelItem(advanced);
  advanced->setExpanded(expanded);
  advanced->setFirstColumnSpanned(true);
}

void PropertyBrowser::ShowRow(QTreeWidgetItem& item) {
  if (IsId(item)) return item.setText(kValue, OneLine(id_));
  const PropertyRow* row = RowOf(&item);
  if (row == nullptr) return;
  const Variant value = control_->Get(row->name);
  const std::string text = ToText(value);
  const bool changed = !(value == fresh_->Get(row->name));
  QFont font = tree_->font();
  font.setBold(changed);
  for (const int column : {kName, kValue}) item.setFont(column, font);
  if (row->type == PropertyType::flag) {
    item.setCheckState(kValue, ToFlag(value) ? Qt::Checked : Qt::Unchecked);
    item.setText(kValue, Text(ToFlag(value) ? words::kYes : words::kNo));
  } else {
    item.setText(kValue, OneLine(InputOf(*row).CaptionOf(text)));
    item.setToolTip(kValue, ToolTipOf(ToQt(text).left(1000)));
  }
  if (row->input.kind == InputKind::color) {
    Swatch color;
    const bool shown = ParseColor(text, color.red, color.green, color.blue);
    const QPixmap picture = shown ? SwatchPicture(color, *this) : NoColorPicture(*this);
    QIcon icon(picture);
    icon.addPixmap(picture, QIcon::Selected);  // keeps the colour in a selected row
    item.setIcon(kValue, icon);
  }
  const QString help = Text(row->input.help);
  item.setData(kName, Qt::AccessibleDescriptionRole,
               changed ? Text(words::kChangedProperty) + ". " + help : help);
}

const PropertyRow* PropertyBrowser::RowOf(const QTreeWidgetItem* item) const {
  if (item == nullptr || control_ == nullptr) return nullptr;
  const std::string name = FromQt(item->data(kName, kProperty).toString());
  return name.empty() ? nullptr : control_->Class().FindProperty(name);
}

void PropertyBrowser::Edit(QTreeWidgetItem& item) {
  if (item.childCount() > 0) return item.setExpanded(!item.isExpanded());
  const PropertyRow* row = RowOf(&item);
  if (row == nullptr) return tree_->editItem(&item, kValue);
  const Variant value = control_->Get(row->name);
  if (row->type == PropertyType::flag) {
    if (onLet) onLet(std::string(row->name), !ToFlag(value));
  } else if (row->input.kind == InputKind::html || NeedsWindow(ToQt(ToText(value)))) {
    EditLong(*row);
  } else {
    tree_->editItem(&item, kValue);
  }
}

void PropertyBrowser::EditLong(const PropertyRow& row) {
  const std::string old = ToText(control_->Get(row.name));
  const QString title = Text(row.Caption());
  const auto edited = row.input.kind == InputKind::html
                          ? EditHtml(title, old, FieldTools(office_->Described()), this)
                          : EditText(title, old, this);
  if (edited && *edited != old && onLet) onLet(std::string(row.name), *edited);
}

void PropertyBrowser::ShowCurrent() {
  const QTreeWidgetItem* item = tree_->currentItem();
  const PropertyRow* row = RowOf(item);
  reset_->setEnabled(row != nullptr && !(control_->Get(row->name) == fresh_->Get(row->name)));
  edit_->setEnabled(row != nullptr && row->type == PropertyType::text);
  if (control_ == nullptr)
    help_->clear();
  else if (row != nullptr)
    help_->setText(Text(row->input.help));
  else if (item != nullptr && IsId(*item))
    help_->setText(Text(words::kIdHelp));
  else if (item != nullptr)
    help_->setText(Text(words::kAdvancedHelp));
  else
    help_->setText(Text(control_->Class().description));
}

// --- the inputs in the rows ---

std::string PropertyBrowser::ValueAt(const QModelIndex& index) const {
  const PropertyRow* row = RowOf(tree_->itemFromIndex(index));
  return row == nullptr ? FromQt(id_) : ToText(control_->Get(row->name));
}

ValueInput PropertyBrowser::InputAt(const QModelIndex& index) const {
  const PropertyRow* row = RowOf(tree_->itemFromIndex(index));
  if (row == nullptr) return {.name = Text(words::kId)};
  return InputOf(*row);
}

ValueInput PropertyBrowser::InputOf(const PropertyRow& row) const {
  ValueInput input{.name = Text(row.Caption())};
  switch (row.input.kind) {
    case InputKind::officeField:
      for (const office::Field& field : FieldsOf(control_->Class(), office_->Described()))
        input.offers.push_back({ToQt(NameOf(field)), field.sqlName});
      // Without fields, a name can still be typed.
      if (!input.offers.empty()) input.kind = ValueInput::Kind::list;
      break;
    case InputKind::list:
    case InputKind::openList:
      for (const Choice& choice : row.input.choices())
        input.offers.push_back({ToQt(choice.caption.In(UserLanguage())), ToText(choice.value)});
      input.kind =
          row.input.kind == InputKind::list ? ValueInput::Kind::list : ValueInput::Kind::openList;
      break;
    case InputKind::color:
      input.kind = ValueInput::Kind::color;
      break;
    case InputKind::ofType:
    case InputKind::html:
      break;
  }
  return input;
}

void PropertyBrowser::Take(const QModelIndex& index, const std::string& value) {
  const PropertyRow* row = RowOf(tree_->itemFromIndex(index));
  if (row == nullptr) {
    if (onRename) onRename(value);
  } else if (onLet) {
    onLet(std::string(row->name), value);
  }
}

}  // namespace kvo::editor
