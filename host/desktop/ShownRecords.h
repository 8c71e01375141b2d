// The records of a data grid for the widget that shows them. Holds none of them: each is asked for
// when it is painted.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "common/forms/FormActions.h"

namespace kvo {

// What the database refuses is reported once, and shows as nothing until the rows are new.
class ShownRecords {
 public:
  // No more than `most` rows, as many as the widget can hold.
  ShownRecords(const Grid& grid, FormActions& host, std::size_t most)
      : grid_(grid), host_(host), most_(most) {}

  // The grid's columns or rows are new.
  void Renew();
  std::size_t Count();
  std::string Cell(std::size_t row, std::size_t column);
  // Of each column, in a widget with so much room for them.
  std::vector<int> Widths(int room) const;

 private:
  void Refused();

  const Grid& grid_;
  FormActions& host_;
  std::size_t most_;
  std::optional<std::size_t> count_;
  bool refused_ = false;
};

}  // namespace kvo
