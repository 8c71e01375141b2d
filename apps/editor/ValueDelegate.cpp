#include "apps/editor/ValueDelegate.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QColorDialog>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPointer>
#include <QTimer>
#include <QToolButton>
#include <algorithm>
#include <functional>
#include <optional>

#include "apps/editor/Words.h"
#include "common/text/modGlobal.h"
#include "host/qt/EditViews.h"
#include "host/qt/QtText.h"

namespace kvo::editor {
namespace {

// A colour as text, with a button that opens the colour dialog.
class ColorInput final : public QWidget {
 public:
  ColorInput(const QString& name, QWidget* parent)
      : QWidget(parent), line_(new QLineEdit(this)), button_(new QToolButton(this)) {
    setAutoFillBackground(true);
    line_->setFrame(false);
    line_->setAccessibleName(name);
    button_->setText("…");
    button_->setToolTip(Text(words::kPickColor));
    button_->setAccessibleName(Text(words::kPickColorFor, {name}));
    button_->setFocusPolicy(Qt::StrongFocus);
    button_->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Ignored);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(line_);
    layout->addWidget(button_);
    setFocusProxy(line_);
    QObject::connect(button_, &QToolButton::clicked, this, [this] { Pick(); });
    // Stays open while the focus moves between line, button and dialog.
    QObject::connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
      if (now != nullptr && !isAncestorOf(now) && !isHidden() && !picking_ && !closes) onFinished();
    });
  }

  QString Value() const { return line_->text(); }
  void Value(const QString& text) {
    line_->setText(text);
    line_->selectAll();
  }

  std::function<void()> onFinished;
  bool closes = false;

 private:
  void Pick() {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    ParseColor(FromQt(Value()), red, green, blue);  // white for any other text
    const QPointer<ColorInput> self = this;
    picking_ = true;
    const QColor color =
        QColorDialog::getColor(QColor(red, green, blue), window(), Text(words::kPickColor));
    if (self == nullptr) return;  // the browser shows another control now
    picking_ = false;
    if (!color.isValid()) return line_->setFocus();
    Value('#' + ToQt(ColorToHex(color.red() + color.green() * 0x100 + color.blue() * 0x10000)));
    onFinished();
  }

  QLineEdit* line_;
  QToolButton* button_;
  bool picking_ = false;
};

QComboBox* MakeList(const ValueInput& input, QWidget* parent) {
  auto* list = new QComboBox(parent);
  if (input.kind == ValueInput::Kind::openList) MakeFreeText(*list);
  list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  for (const OfferedValue& offer : input.offers) list->addItem(offer.caption, ToQt(offer.value));
  // The popup may be wider than the row.
  QAbstractItemView& popup = *list->view();
  popup.setMinimumWidth(popup.sizeHintForColumn(0) +
                        popup.style()->pixelMetric(QStyle::PM_ScrollBarExtent));
  return list;
}

// An open list shows the value itself, not its caption, so that the user can change it.
void ShowInList(QComboBox& list, const std::string& value) {
  const QString text = ToQt(value);
  list.setCurrentIndex(list.findData(text));
  if (list.isEditable()) {
    list.setEditText(text);
    list.lineEdit()->selectAll();
  } else {
    list.setPlaceholderText(text);  // shows a value that the list does not have
  }
}

std::optional<QString> ValueOf(const QComboBox& list) {
  const QString text = list.currentText();
  int row = list.currentIndex();
  if (list.isEditable() && (row < 0 || list.itemText(row) != text)) row = list.findText(text);
  if (row >= 0) return list.itemData(row).toString();
  if (list.isEditable()) return text;
  return std::nullopt;
}

}  // namespace

QString ValueInput::CaptionOf(const std::string& value) const {
  const auto offer = std::ranges::find(offers, value, &OfferedValue::value);
  return offer == offers.end() ? ToQt(value) : offer->caption;
}

ValueDelegate::ValueDelegate(ValueSource& source, QObject* parent)
    : QStyledItemDelegate(parent), source_(source) {
  // Runs before the view's own handler, which moves the focus.
  connect(this, &QAbstractItemDelegate::closeEditor, this, [](QWidget* editor) {
    if (auto* color = dynamic_cast<ColorInput*>(editor)) color->closes = true;
  });
}

// Leaves room for the inputs, which open in the row.
QSize ValueDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
  constexpr int kAroundText = 9;
  QSize size = QStyledItemDelegate::sizeHint(option, index);
  size.setHeight(std::max(size.height(), option.fontMetrics.height() + kAroundText));
  return size;
}

QWidget* ValueDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                     const QModelIndex& index) const {
  const ValueInput input = source_.InputAt(index);
  QWidget* editor = nullptr;
  switch (input.kind) {
    case ValueInput::Kind::list:
    case ValueInput::Kind::openList: {
      QComboBox* list = MakeList(input, parent);
      connect(list, &QComboBox::activated, this, [this, list] { Finish(list); });
      if (!list->isEditable()) QTimer::singleShot(0, list, &QComboBox::showPopup);
      editor = list;
      break;
    }
    case ValueInput::Kind::color: {
      auto* color = new ColorInput(input.name, parent);
      color->onFinished = [this, color] { Finish(color); };
      editor = color;
      break;
    }
    case ValueInput::Kind::line: {
      auto* line = new QLineEdit(parent);
      line->setFrame(false);
      editor = line;
      break;
    }
  }
  editor->setAccessibleName(input.name);
  return editor;
}

void ValueDelegate::Finish(QWidget* editor) const {
  auto* self = const_cast<ValueDelegate*>(this);
  Q_EMIT self->commitData(editor);
  Q_EMIT self->closeEditor(editor);
}

void ValueDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
  const std::string value = source_.ValueAt(index);
  if (auto* list = qobject_cast<QComboBox*>(editor))
    ShowInList(*list, value);
  else if (auto* color = dynamic_cast<ColorInput*>(editor))
    color->Value(ToQt(value));
  else
    static_cast<QLineEdit*>(editor)->setText(ToQt(value));
}

void ValueDelegate::setModelData(QWidget* editor, QAbstractItemModel*,
                                 const QModelIndex& index) const {
  std::optional<QString> value;
  if (const auto* list = qobject_cast<const QComboBox*>(editor))
    value = ValueOf(*list);
  else if (const auto* color = dynamic_cast<const ColorInput*>(editor))
    value = color->Value();
  else
    value = static_cast<const QLineEdit*>(editor)->text();
  if (value && FromQt(*value) != source_.ValueAt(index)) source_.Take(index, FromQt(*value));
}

}  // namespace kvo::editor
