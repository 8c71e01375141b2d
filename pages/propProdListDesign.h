#pragma once

#include "pages/DesignPage.h"

namespace kvo {

// The look of a product list's table.
class propProdListDesign final : public DesignPage {
 public:
  propProdListDesign();
};

}  // namespace kvo
