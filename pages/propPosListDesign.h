#pragma once

#include "pages/DesignPage.h"

namespace kvo {

// The look of a position list's table.
class propPosListDesign final : public DesignPage {
 public:
  propPosListDesign();
};

}  // namespace kvo
