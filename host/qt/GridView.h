#pragma once

#include <QAbstractTableModel>
#include <QHeaderView>
#include <QScrollBar>
#include <QTableView>
#include <algorithm>
#include <limits>

#include "host/desktop/Measures.h"
#include "host/desktop/ShownRecords.h"
#include "host/qt/ControlView.h"
#include "host/qt/QtText.h"
#include "host/qt/TahomaFont.h"
#include "host/qt/Twips.h"

namespace kvo {

class GridModel final : public QAbstractTableModel {
 public:
  GridModel(const Grid& grid, ViewHost& host)
      : grid_(grid), records_(grid, host, std::numeric_limits<int>::max()) {}

  // The grid's columns or rows changed.
  void Renew() {
    beginResetModel();
    records_.Renew();
    endResetModel();
  }
  std::vector<int> Widths(int room) const { return records_.Widths(room); }

  int rowCount(const QModelIndex& parent) const override {
    return parent.isValid() ? 0 : static_cast<int>(records_.Count());
  }
  int columnCount(const QModelIndex& parent) const override {
    return parent.isValid() ? 0 : static_cast<int>(grid_.Columns().size());
  }
  QVariant data(const QModelIndex& index, int role) const override {
    if (!index.isValid() || role != Qt::DisplayRole) return {};
    return ToQt(records_.Cell(static_cast<std::size_t>(index.row()),
                              static_cast<std::size_t>(index.column())));
  }
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
    if (orientation == Qt::Vertical) return {};
    const GridColumn& column = grid_.Columns()[static_cast<std::size_t>(section)];
    if (role == Qt::DisplayRole) return ToQt(column.caption);
    if (role == Qt::ToolTipRole) return ToQt(column.sortHint);
    return {};
  }

 private:
  const Grid& grid_;
  mutable ShownRecords records_;
};

class GridView final : public WidgetViewOf<Grid, QTableView> {
 public:
  GridView(Grid& grid, QWidget& parent, ViewHost& host)
      : ViewOf(grid, host, new QTableView(&parent)), model_(grid, host) {
    widget_->setModel(&model_);
    widget_->setSelectionBehavior(QAbstractItemView::SelectRows);
    widget_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    widget_->setTabKeyNavigation(false);
    widget_->setWordWrap(false);
    widget_->setShowGrid(false);
    widget_->verticalHeader()->hide();
    widget_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    widget_->verticalHeader()->setMinimumSectionSize(1);
    widget_->verticalHeader()->setDefaultSectionSize(ToPixels(kGridRowHeight, *widget_));
    widget_->horizontalHeader()->setFont(QtFont(grid.TextFont()));
    widget_->horizontalHeader()->setHighlightSections(false);
    widget_->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    widget_->horizontalHeader()->setStretchLastSection(true);
    QObject::connect(
        widget_->selectionModel(), &QItemSelectionModel::selectionChanged, widget_,
        [this] { host_.Act([this] { FormRenderer::SelectRows(control_, SelectedRows()); }); });
    QObject::connect(widget_, &QTableView::doubleClicked, widget_,
                     [this] { host_.Act([this] { FormRenderer::DoubleClick(control_); }); });
    ShowRows();
  }
  void Show(Aspect aspect) override {
    if (aspect == Aspect::rows) ShowRows();
    if (aspect == Aspect::selection) ShowSelection();
  }

 private:
  void ShowRows() {
    model_.Renew();
    const int room = ToPixels(control_.At().width, *widget_) - 2 * widget_->frameWidth() -
                     widget_->verticalScrollBar()->sizeHint().width();
    int column = 0;
    for (const int width : model_.Widths(room)) widget_->setColumnWidth(column++, width);
  }
  void ShowSelection() {
    if (SelectedRows() == control_.SelectedRows()) return;
    QItemSelection selection;
    for (const std::size_t row : control_.SelectedRows()) {
      const QModelIndex index = model_.index(static_cast<int>(row), 0);
      selection.select(index, index);
    }
    widget_->selectionModel()->select(
        selection, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  }
  std::vector<std::size_t> SelectedRows() const {
    std::vector<std::size_t> rows;
    for (const QItemSelectionRange& range : widget_->selectionModel()->selection())
      for (int row = range.top(); row <= range.bottom(); ++row)
        rows.push_back(static_cast<std::size_t>(row));
    std::ranges::sort(rows);
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
  }

  GridModel model_;
};

}  // namespace kvo
