#pragma once

#include <QAbstractTableModel>
#include <QTableView>

#include "host/desktop/ShownRecords.h"
#include "host/qt/ControlView.h"

namespace kvo {

class GridModel final : public QAbstractTableModel {
 public:
  GridModel(const Grid& grid, ViewHost& host);

  // The grid's columns or rows are new.
  void Renew();
  std::vector<int> Widths(int room) const { return records_.Widths(room); }

  int rowCount(const QModelIndex& parent) const override;
  int columnCount(const QModelIndex& parent) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  const Grid& grid_;
  mutable ShownRecords records_;
};

class GridView final : public WidgetViewOf<Grid, QTableView> {
 public:
  GridView(Grid& grid, QWidget& parent, ViewHost& host);
  void Show(Aspect aspect) override;

 private:
  void ShowRows();
  void ShowSelection();
  std::vector<std::size_t> SelectedRows() const;

  GridModel model_;
};

}  // namespace kvo
