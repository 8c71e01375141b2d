#pragma once

#include "pages/DesignPage.h"

namespace kvo {

// The look of a position list's table.
class propPosListDesign final : public DesignPage {
 public:
  propPosListDesign() : DesignPage(Rows(), Transfers()) {}

 private:
  static std::span<const Row> Rows();
  static std::span<const Transfer> Transfers();
};

}  // namespace kvo
