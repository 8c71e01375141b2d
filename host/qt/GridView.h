#pragma once

#include <QAbstractTableModel>
#include <QTableView>
#include <optional>

#include "host/qt/ControlView.h"

namespace kvo {

// The records of a data grid. Holds none of them: each is asked for when it is painted.
class GridModel final : public QAbstractTableModel {
 public:
  GridModel(const Grid& grid, ViewHost& host) : grid_(grid), host_(host) {}

  // The grid's columns or rows are new.
  void Renew();

  int rowCount(const QModelIndex& parent) const override;
  int columnCount(const QModelIndex& parent) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  // What the database refuses is reported once, and shows as nothing until the rows are new.
  void Refused() const;

  const Grid& grid_;
  ViewHost& host_;
  mutable std::optional<int> rows_;
  mutable bool refused_ = false;
};

class GridView final : public ControlView {
 public:
  GridView(Grid& grid, QWidget& parent, ViewHost& host);
  QWidget* Widget() const override { return widget_; }
  void Show(Aspect aspect) override;

 private:
  void ShowRows();
  void ShowSelection();
  std::vector<std::size_t> SelectedRows() const;

  Grid& grid_;
  GridModel model_;
  QTableView* widget_;
};

}  // namespace kvo
