#pragma once

#include "pages/FieldPage.h"

namespace kvo {

class propContactGeneral final : public FieldPage {
 public:
  propContactGeneral() : FieldPage("cboContactFields", "ContactFields") {}
};

}  // namespace kvo
