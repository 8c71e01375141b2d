#include "host/desktop/ShownRecords.h"

#include <algorithm>
#include <utility>

namespace kvo {

void ShownRecords::Renew() {
  count_.reset();
  failed_ = false;
}

void ShownRecords::ReportFailure() {
  if (!std::exchange(failed_, true)) host_.ReportLater(std::current_exception());
}

std::size_t ShownRecords::Count() {
  if (count_) return *count_;
  count_ = 0;
  try {
    count_ = std::min(grid_.RowCount(), most_);
  } catch (const std::exception&) {
    ReportFailure();
  }
  return *count_;
}

std::string ShownRecords::Cell(std::size_t row, std::size_t column) {
  try {
    if (!failed_) return grid_.Cell(row, column);
  } catch (const std::exception&) {
    ReportFailure();
  }
  return {};
}

std::vector<int> ShownRecords::Widths(int room) const {
  int shares = 0;
  for (const GridColumn& column : grid_.Columns()) shares += column.size;
  std::vector<int> widths;
  for (const GridColumn& column : grid_.Columns())
    widths.push_back(shares == 0 ? 0 : room * column.size / shares);
  return widths;
}

}  // namespace kvo
