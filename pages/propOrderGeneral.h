#pragma once

#include "pages/FieldPage.h"

namespace kvo {

class propOrderGeneral final : public FieldPage {
 public:
  propOrderGeneral() : FieldPage("cboOrderFields", "OrderFields") {}
};

}  // namespace kvo
