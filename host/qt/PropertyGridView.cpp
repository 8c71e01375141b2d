#include "host/qt/PropertyGridView.h"

#include <QApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QStyledItemDelegate>
#include <QTreeView>
#include <utility>

#include "host/desktop/Measures.h"
#include "host/qt/QtText.h"
#include "host/qt/Swatch.h"
#include "host/qt/Twips.h"
#include "host/qt/ValueEditor.h"

namespace kvo {
namespace {

// Draws the rows: categories on a band, disabled rows grey, colours with a swatch.
class RowPainter final : public QStyledItemDelegate {
 public:
  RowPainter(const PropertyGridModel& model, QObject* parent)
      : QStyledItemDelegate(parent), model_(model) {}

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    return {QStyledItemDelegate::sizeHint(option, index).width(),
            ToPixels(kGridRowHeight, *option.widget)};
  }

  // Ignores the editor's own size hint.
  void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                            const QModelIndex&) const override {
    editor->setGeometry(option.rect);
  }

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    const PropertyGridItem& item = *model_.Item(index);
    QStyleOptionViewItem shown = option;
    if (!item.Enabled()) shown.state &= ~QStyle::State_Enabled;
    if (index.column() == PropertyGridModel::value) shown.state &= ~QStyle::State_Selected;
    shown.state &= ~QStyle::State_HasFocus;
    if (item.Kind() == ItemKind::category)
      painter->fillRect(option.rect, option.palette.brush(QPalette::AlternateBase));
    if (const auto color = SwatchOf(item); color && index.column() == PropertyGridModel::value)
      PaintSwatch(*painter, shown, *color);
    QStyledItemDelegate::paint(painter, shown, index);
    if (SpansColumns(item)) return;
    painter->save();
    painter->setPen(option.palette.color(QPalette::Midlight));
    painter->drawLine(option.rect.bottomLeft(), option.rect.bottomRight());
    painter->drawLine(option.rect.topRight(), option.rect.bottomRight());
    painter->restore();
  }

 private:
  // Draws the swatch before the text and shrinks the text's area.
  static void PaintSwatch(QPainter& painter, QStyleOptionViewItem& option, const Swatch& color) {
    const QPixmap swatch = SwatchPicture(color, *option.widget);
    const int size = SwatchSize(*option.widget);
    const int margin = (option.rect.height() - size) / 2;
    painter.drawPixmap(option.rect.left() + margin, option.rect.top() + margin, swatch);
    option.rect.setLeft(option.rect.left() + margin + size);
  }

  const PropertyGridModel& model_;
};

}  // namespace

class PropertyTree final : public QTreeView {
 public:
  PropertyTree(PropertyGrid& grid, PropertyGridModel& model, QWidget* parent, ViewHost& host)
      : QTreeView(parent), grid_(grid), model_(model), host_(host) {
    setModel(&model);
    setItemDelegate(new RowPainter(model, this));
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true);
    setEditTriggers(NoEditTriggers);
    setAllColumnsShowFocus(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setHeaderHidden(grid.Caption().empty());
    header()->setStretchLastSection(false);  // both columns share the width
    header()->setSectionResizeMode(QHeaderView::Stretch);
    header()->setMinimumSectionSize(1);
    header()->setSectionsClickable(false);
    connect(selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& now) { CurrentChanged(now); });
    // Waits until all columns have their widths, then places the editors and buttons.
    connect(
        header(), &QHeaderView::sectionResized, this, [this] { updateEditorGeometries(); },
        Qt::QueuedConnection);
    connect(this, &QTreeView::clicked, this, [this] { EnterEditor(Qt::MouseFocusReason); });
  }

  void ShowRows() {
    // Closes the editor before its row is removed, so that the focus returns to the grid.
    if (edited_ != grid_.SelectedItem()) CloseEditor();
    model_.Synchronize();
    const bool list = IsPlainList(grid_);
    setColumnHidden(PropertyGridModel::value, list);
    for (int row = 0; !list && row < model_.rowCount({}); ++row) {
      const QModelIndex index = model_.index(row, PropertyGridModel::caption);
      PropertyGridItem& item = *model_.Item(index);
      setFirstColumnSpanned(row, {}, SpansColumns(item));
      if (item.Kind() == ItemKind::button && indexWidget(index) == nullptr)
        setIndexWidget(index, MakeButton(item));
    }
    ShowSelection();
  }

  void ShowSelection() {
    const QModelIndex index = model_.IndexOf(grid_.SelectedItem(), PropertyGridModel::caption);
    if (index.row() != currentIndex().row() || !index.isValid()) {
      selectionModel()->setCurrentIndex(
          index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
      if (!index.isValid()) selectionModel()->clear();
    }
    OpenEditor(grid_.SelectedItem());
  }

  void ShowItem(const PropertyGridItem& item) {
    model_.Changed(item);
    if (editor_ != nullptr && edited_ == &item) {
      editor_->setEnabled(item.Enabled());
      editor_->ShowValue();
      SetTabStop();
    }
    if (QWidget* button = indexWidget(model_.IndexOf(&item, PropertyGridModel::caption)))
      button->setEnabled(item.Enabled());
  }

 protected:
  void focusInEvent(QFocusEvent* event) override {
    // Getting the focus must not select a row.
    host_.Update([&] {
      QTreeView::focusInEvent(event);
      if (grid_.SelectedItem() == nullptr) selectionModel()->clear();
    });
    EnterEditor(event->reason());
  }

  void keyPressEvent(QKeyEvent* event) override {
    PropertyGridItem* item = grid_.SelectedItem();
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const bool editing = editor_ != nullptr && editor_->isEnabled();
    if (event->key() == Qt::Key_Delete && !editing) {
      host_.Act([this] { FormRenderer::PressDelete(grid_); });
    } else if (item != nullptr && item->Kind() == ItemKind::button &&
               (enter || event->key() == Qt::Key_Space)) {
      host_.Act([item] { FormRenderer::ClickButton(*item); });
    } else if (editor_ != nullptr && enter) {
      editor_->SelectValue();  // does not press the dialog's button
    } else if (!MoveSelection(event->key())) {
      QTreeView::keyPressEvent(event);
    }
  }

 private:
  bool MoveSelection(int key) {
    const int rows = model_.rowCount({});
    PropertyGridItem* next = nullptr;
    switch (key) {
      case Qt::Key_Up:
        next = NextRow(grid_, -1);
        break;
      case Qt::Key_Down:
        next = NextRow(grid_, 1);
        break;
      case Qt::Key_Home:
        next = NextRow(grid_, -rows);
        break;
      case Qt::Key_End:
        next = NextRow(grid_, rows);
        break;
      case Qt::Key_Left:
      case Qt::Key_Right:
        return true;  // rows cannot be expanded
      default:
        return false;
    }
    if (next == nullptr) return true;
    setCurrentIndex(model_.IndexOf(next, PropertyGridModel::caption));
    EnterEditor(Qt::OtherFocusReason);
    return true;
  }

  QPushButton* MakeButton(PropertyGridItem& item) {
    auto* button = new QPushButton(ToQtCaption(item.Caption()));
    button->setFocusPolicy(Qt::NoFocus);  // the row has the focus
    button->setAutoDefault(false);
    button->setEnabled(item.Enabled());
    connect(button, &QPushButton::clicked, this, [this, &item] {
      setFocus(Qt::MouseFocusReason);
      setCurrentIndex(model_.IndexOf(&item, PropertyGridModel::caption));
      host_.Act([&item] { FormRenderer::ClickButton(item); });
    });
    return button;
  }

  void CurrentChanged(const QModelIndex& now) {
    host_.Act([&] { FormRenderer::SelectItem(grid_, model_.Item(now)); });
  }

  void OpenEditor(PropertyGridItem* item) {
    const QModelIndex index = model_.IndexOf(item, PropertyGridModel::value);
    if (editor_ != nullptr && edited_ == item && indexWidget(index) == editor_) return;
    CloseEditor();
    if (item == nullptr) return;
    editor_ = MakeValueEditor(*item, viewport(), host_);
    if (editor_ == nullptr) return;
    edited_ = item;
    editor_->setFont(font());
    editor_->setAutoFillBackground(true);
    editor_->setEnabled(item->Enabled());
    setIndexWidget(index, editor_);
    // Puts the editor at the grid's place in the tab order.
    QWidget* former = this;
    for (QWidget* part : editor_->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
      if ((part->focusPolicy() & Qt::TabFocus) == 0) continue;
      setTabOrder(former, part);
      former = part;
    }
    SetTabStop();
    if (hasFocus()) EnterEditor(Qt::OtherFocusReason);
  }

  void SetTabStop() {
    const bool elsewhere = editor_ != nullptr && editor_->isEnabled();
    setFocusPolicy(elsewhere ? Qt::ClickFocus : Qt::StrongFocus);
  }

  void CloseEditor() {
    if (editor_ == nullptr) return;
    const bool focused = editor_->isAncestorOf(QApplication::focusWidget());
    const QModelIndex index = model_.IndexOf(edited_, PropertyGridModel::value);
    QWidget* editor = std::exchange(editor_, nullptr);
    edited_ = nullptr;
    SetTabStop();
    if (focused) setFocus(Qt::OtherFocusReason);
    editor->hide();  // deleted only after its own events
    if (index.isValid() && indexWidget(index) == editor)
      setIndexWidget(index, nullptr);
    else
      editor->deleteLater();
  }

  void EnterEditor(Qt::FocusReason reason) {
    if (editor_ == nullptr || !editor_->isEnabled()) return;
    editor_->setFocus(reason);
    editor_->SelectValue();
  }

  PropertyGrid& grid_;
  PropertyGridModel& model_;
  ViewHost& host_;
  QPointer<ValueEditor> editor_;  // of the selected row, if it has one
  const PropertyGridItem* edited_ = nullptr;
};

PropertyGridView::PropertyGridView(PropertyGrid& grid, QWidget& parent, ViewHost& host)
    : model_(grid), widget_(new PropertyTree(grid, model_, &parent, host)) {
  widget_->ShowRows();
}

QWidget* PropertyGridView::Widget() const { return widget_; }

void PropertyGridView::Show(Aspect aspect) {
  if (aspect == Aspect::items) widget_->ShowRows();
  if (aspect == Aspect::selection) widget_->ShowSelection();
}

void PropertyGridView::ShowItem(PropertyGridItem& item) { widget_->ShowItem(item); }

}  // namespace kvo
