#include "host/qt/ValueEditor.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QToolButton>

#include "host/qt/EditViews.h"
#include "host/qt/QtText.h"
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

// The button beside a value. Handles Enter and Space; passes the up and down arrows and Escape on,
// and ignores all other keys.
class ValueButton final : public QToolButton {
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

// A line edit for a row's value.
class ValueLine {
 public:
  ValueLine(QLineEdit& line, PropertyGridItem& item, ViewHost& host)
      : line_(line), text_(&item), sync_(line, text_, host) {
    line.setAccessibleName(ToQt(item.Caption()));
  }

  void Show() { sync_.ShowText(); }
  void SelectAll() {
    text_.Select({0, CharacterCount(text_.Text())});
    line_.selectAll();
  }

 private:
  QLineEdit& line_;
  ValueText text_;
  LineSync sync_;
};

class TextEditor final : public ValueEditor {
 public:
  TextEditor(PropertyGridItem& item, QWidget* parent, ViewHost& host)
      : ValueEditor(parent),
        item_(item),
        swatch_(new QLabel(this)),
        line_(new SteadyLine(this)),
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
  void SelectValue() override { value_.SelectAll(); }

 private:
  QToolButton* MakeButton(PropertyGridItem& item, ViewHost& host) {
    auto* button = new ValueButton(this);
    button->setText(QStringLiteral("..."));
    button->setAccessibleName(ToQt(item.Caption()) + QLatin1String(" ..."));
    button->setFocusPolicy(Qt::TabFocus);
    button->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Ignored);
    // Selects the value afterwards for typing, if the row still exists.
    QObject::connect(button, &QToolButton::clicked, line_, [this, &item, &host] {
      const QPointer<QLineEdit> line = line_;
      const PropertyGrid& grid = item.Grid();
      host.Act([&item] { FormRenderer::ClickButton(item); });
      if (line == nullptr || RowOf(grid, &item) == kNoRow) return;
      line->setFocus(Qt::OtherFocusReason);
      SelectValue();
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
      const PropertyGrid& grid = item_.Grid();
      host.Act([&] {
        FormRenderer::ChooseValue(item_, *item_.Choices()[static_cast<std::size_t>(row)]);
      });
      if (RowOf(grid, &item_) == kNoRow) return;
      host.Update([this] { ShowValue(); });
      SelectValue();
    });
  }
  void ShowValue() override {
    ShowRows(ListOfRows(*list_), item_.Choices(), &PropertyGridItem::Caption, ChosenRow(item_));
    list_->setPlaceholderText(ToQt(ToText(item_.Value())));  // shows a value that is not a choice
    if (value_) value_->Show();
  }
  void SelectValue() override {
    if (value_) value_->SelectAll();
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
