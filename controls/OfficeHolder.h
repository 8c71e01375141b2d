// The host's context object, as the controls that need it hold it.
#pragma once

#include <utility>

#include "common/values/Variant.h"

namespace kvo {

// One counted reference, not persisted: kept until the host sets another or the control ends.
class OfficeHolder {
 public:
  const ObjectRef& Office() const { return office_; }
  void Office(ObjectRef oNewOffice) { office_ = std::move(oNewOffice); }

 private:
  ObjectRef office_;
};

}  // namespace kvo
