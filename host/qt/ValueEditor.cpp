#include "host/qt/ValueEditor.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QToolButton>
#include <algorithm>
#include <limits>

#include "common/forms/FormKeys.h"
#include "host/qt/EditViews.h"
#include "host/qt/QtText.h"
#include "host/qt/ShownText.h"
#include "host/qt/Swatch.h"
#include "host/qt/Twips.h"

namespace kvo {
namespace {

QHBoxLayout* TightLayout(QWidget* of) {
  auto* layout = new QHBoxLayout(of);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  return layout;
}

UnitRange SelectedIn(const QLineEdit& line) {
  if (line.hasSelectedText()) return {line.selectionStart(), line.selectionLength()};
  return {line.cursorPosition(), 0};
}

// As far as the text reaches.
void SelectIn(QLineEdit& line, const UnitRange& wanted) {
  const auto size = static_cast<int>(line.text().size());
  const int start = std::min(wanted.start, size);
  if (const int length = std::min(wanted.length, size - start); length > 0)
    line.setSelection(start, length);
  else
    line.setCursorPosition(start);
}

// The button beside a value. Other keys than its own two go on through the rows or do nothing.
class BesideValue final : public QToolButton {
 public:
  using QToolButton::QToolButton;

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    switch (event->key()) {
      case Qt::Key_Return:
      case Qt::Key_Enter:
        return click();
      case Qt::Key_Space:
        return QToolButton::keyPressEvent(event);
      case Qt::Key_Up:
      case Qt::Key_Down:
      case Qt::Key_Escape:
        return event->ignore();
      default:
        return;
    }
  }
};

// Keeps a line edit and the value of a row in step.
class ValueLine {
 public:
  ValueLine(QLineEdit& line, PropertyGridItem& item, ViewHost& host)
      : line_(line), item_(item), host_(host), shown_({}, Lines::one, kQtStyle) {
    line.setMaxLength(std::numeric_limits<int>::max());
    line.setAccessibleName(ToQt(item.Caption()));
    Show();
    QObject::connect(&line, &QLineEdit::textEdited, &line, [this] { Edited(); });
  }
  ValueLine(const ValueLine&) = delete;
  ValueLine& operator=(const ValueLine&) = delete;

  void Show() {
    shown_ = ShownText(ToText(item_.Value()), Lines::one, kQtStyle);
    const QString units = UnitsOf(shown_);
    if (line_.text() == units) return;
    const UnitRange selected = SelectedIn(line_);
    line_.setText(units);
    SelectIn(line_, selected);
  }

 private:
  void Edited() {
    host_.Act([this] {
      const int caret = line_.cursorPosition();
      if (const auto edit = FindEdit(shown_, {caret, 0}, line_.text().toStdU16String(), caret))
        Apply(*edit);
    });
    host_.Update([this] { Show(); });
  }

  void Apply(const TextEdit& edit) {
    std::string text = ToText(item_.Value());
    const std::size_t start = CharacterOffset(text, edit.start);
    const std::size_t end = CharacterOffset(text, edit.start + edit.length);
    text.replace(start, end - start, OneLine(edit.typed));
    UserAction::EditValue(item_, text);
  }

  QLineEdit& line_;
  PropertyGridItem& item_;
  ViewHost& host_;
  ShownText shown_;
};

class TextEditor final : public ValueEditor {
 public:
  TextEditor(PropertyGridItem& item, QWidget* parent, ViewHost& host)
      : ValueEditor(parent),
        item_(item),
        swatch_(new QLabel(this)),
        line_(new CalmLine(this)),
        value_(*line_, item, host) {
    constexpr int kBeforeSwatch = 45;
    swatch_->setContentsMargins(ToPixels(kBeforeSwatch, *this), 0, 0, 0);
    line_->setFrame(false);
    QHBoxLayout* layout = TightLayout(this);
    layout->addWidget(swatch_);
    layout->addWidget(line_);
    ShowSwatch();
    if (item.Kind() == ItemKind::color) layout->addWidget(MakeButton(item, host));
    setFocusProxy(line_);
  }
  void ShowValue() override {
    value_.Show();
    ShowSwatch();
  }
  void SelectValue() override { line_->selectAll(); }

 private:
  QToolButton* MakeButton(PropertyGridItem& item, ViewHost& host) {
    auto* button = new BesideValue(this);
    button->setText(QStringLiteral("..."));
    button->setAccessibleName(ToQt(item.Caption()) + QLatin1String(" ..."));
    button->setFocusPolicy(Qt::TabFocus);
    button->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Ignored);
    // The value may be typed over then.
    QObject::connect(button, &QToolButton::clicked, line_, [this, &item, &host] {
      const QPointer<QLineEdit> line = line_;
      host.Act([&item] { UserAction::ClickButton(item); });
      if (line == nullptr) return;
      line->setFocus(Qt::OtherFocusReason);
      line->selectAll();
    });
    return button;
  }

  void ShowSwatch() {
    const auto color = SwatchOf(item_);
    swatch_->setVisible(color.has_value());
    if (color) swatch_->setPixmap(SwatchPicture(*color, *this));
  }

  PropertyGridItem& item_;
  QLabel* swatch_;
  QLineEdit* line_;
  ValueLine value_;
};

class ListEditor final : public ValueEditor {
 public:
  ListEditor(PropertyGridItem& item, QWidget* parent, ViewHost& host)
      : ValueEditor(parent), item_(item), list_(new QComboBox(this)) {
    if (item.Editable()) MakeFreeText(*list_);
    list_->setFrame(false);
    list_->setAccessibleName(ToQt(item.Caption()));
    ListEditor::ShowValue();
    if (item.Editable()) value_ = std::make_unique<ValueLine>(*list_->lineEdit(), item, host);
    TightLayout(this)->addWidget(list_);
    setFocusProxy(list_);
    QObject::connect(list_, &QComboBox::activated, list_, [this, &host](int row) {
      host.Act(
          [&] { UserAction::ChooseValue(item_, *item_.Choices()[static_cast<std::size_t>(row)]); });
      host.Update([this] { ShowValue(); });
      SelectValue();
    });
  }
  void ShowValue() override {
    const std::string value = ToText(item_.Value());
    const auto& choices = item_.Choices();
    const UnitRange selected = value_ ? SelectedIn(*list_->lineEdit()) : UnitRange();
    for (auto row = static_cast<std::size_t>(list_->count()); row < choices.size(); ++row)
      list_->addItem(ToQt(choices[row]->Caption()));
    const auto chosen = std::ranges::find_if(
        choices, [&](const auto& choice) { return choice->Caption() == value; });
    const auto row = chosen == choices.end() ? -1 : static_cast<int>(chosen - choices.begin());
    if (list_->currentIndex() != row) list_->setCurrentIndex(row);
    list_->setPlaceholderText(ToQt(value));  // a value that is no choice still shows
    if (!value_) return;
    value_->Show();
    SelectIn(*list_->lineEdit(), selected);
  }
  void SelectValue() override {
    if (list_->lineEdit() != nullptr) list_->lineEdit()->selectAll();
  }

 private:
  PropertyGridItem& item_;
  QComboBox* list_;
  std::unique_ptr<ValueLine> value_;
};

}  // namespace

ValueEditor* MakeValueEditor(PropertyGridItem& item, QWidget* parent, ViewHost& host) {
  switch (item.Kind()) {
    case ItemKind::text:
    case ItemKind::color:
      return new TextEditor(item, parent, host);
    case ItemKind::list:
      return new ListEditor(item, parent, host);
    default:
      return nullptr;
  }
}

}  // namespace kvo
