#pragma once

#include "pages/DesignPage.h"

namespace kvo {

// The look of a product list's table.
class propProdListDesign final : public DesignPage {
 public:
  propProdListDesign() : DesignPage(Rows(), Transfers()) {}

 private:
  static std::span<const Row> Rows();
  static std::span<const Transfer> Transfers();
};

}  // namespace kvo
