// Supplies the records of a data grid to the widget that shows them. Holds none: fetches each one
// when it is painted.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "common/forms/FormActions.h"

namespace kvo {

// Reports a database failure once, then shows empty cells until the rows change.
class ShownRecords {
 public:
  // `most` is the maximum number of rows that the widget can hold.
  ShownRecords(const Grid& grid, FormActions& host, std::size_t most)
      : grid_(grid), host_(host), most_(most) {}

  // The grid's columns or rows changed.
  void Renew();
  std::size_t Count();
  std::string Cell(std::size_t row, std::size_t column);
  // The columns' widths in a widget with `room` for all of them.
  std::vector<int> Widths(int room) const;

 private:
  void ReportFailure();

  const Grid& grid_;
  FormActions& host_;
  std::size_t most_;
  std::optional<std::size_t> count_;
  bool failed_ = false;
};

}  // namespace kvo
