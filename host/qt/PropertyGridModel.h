#pragma once

#include <QAbstractTableModel>
#include <vector>

#include "common/forms/FormPropertyGrid.h"

namespace kvo {

// The rows of a property grid: captions in the first column, values in the second.
class PropertyGridModel final : public QAbstractTableModel {
 public:
  enum Column { caption, value, columns };

  explicit PropertyGridModel(const PropertyGrid& grid) : grid_(grid) {}

  // Updates the model after the grid's rows were added or removed.
  void Synchronize();
  void Changed(const PropertyGridItem& item);

  // Returns nullptr for an invalid index.
  PropertyGridItem* Item(const QModelIndex& index) const;
  // Returns an invalid index for nullptr.
  QModelIndex IndexOf(const PropertyGridItem* item, Column column) const;

  int rowCount(const QModelIndex& parent) const override;
  int columnCount(const QModelIndex& parent) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  const PropertyGrid& grid_;
  std::vector<PropertyGridItem*> rows_;
};

}  // namespace kvo
