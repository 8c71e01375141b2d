#include "host/qt/PropertyGridModel.h"

#include <algorithm>

#include "host/qt/QtText.h"
#include "host/qt/TahomaFont.h"

namespace kvo {

void PropertyGridModel::Synchronize() {
  std::vector<PropertyGridItem*> now;
  for (const auto& item : grid_.Items()) now.push_back(item.get());
  const auto [was, is] = std::ranges::mismatch(rows_, now);
  const auto same = static_cast<int>(was - rows_.begin());
  const auto added = static_cast<int>(now.size()) - static_cast<int>(rows_.size());
  if (added > 0 && was == rows_.end()) {
    beginInsertRows({}, same, same + added - 1);
    rows_ = std::move(now);
    endInsertRows();
  } else if (added == -1 && std::equal(was + 1, rows_.end(), is, now.end())) {
    beginRemoveRows({}, same, same);
    rows_ = std::move(now);
    endRemoveRows();
  } else if (rows_ != now) {
    beginResetModel();
    rows_ = std::move(now);
    endResetModel();
  }
}

void PropertyGridModel::Changed(const PropertyGridItem& item) {
  const QModelIndex begin = IndexOf(&item, caption);
  if (begin.isValid()) Q_EMIT dataChanged(begin, begin.siblingAtColumn(value));
}

PropertyGridItem* PropertyGridModel::Item(const QModelIndex& index) const {
  return index.isValid() ? rows_[static_cast<std::size_t>(index.row())] : nullptr;
}

QModelIndex PropertyGridModel::IndexOf(const PropertyGridItem* item, Column column) const {
  const auto row = std::ranges::find(rows_, item);
  return row == rows_.end() ? QModelIndex() : index(static_cast<int>(row - rows_.begin()), column);
}

int PropertyGridModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int PropertyGridModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columns;
}

QVariant PropertyGridModel::data(const QModelIndex& index, int role) const {
  const PropertyGridItem* item = Item(index);
  if (item == nullptr) return {};
  if (role == Qt::FontRole && item->Kind() == ItemKind::category) return QtFont(kBoldFont);
  if (role != Qt::DisplayRole) return {};
  return ToQt(index.column() == caption ? item->Caption() : ToText(item->Value()));
}

QVariant PropertyGridModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section != caption)
    return role == Qt::DisplayRole ? QVariant(QString()) : QVariant();
  return ToQt(grid_.Caption());
}

}  // namespace kvo
