// For builds without SOCI: every access to the shop database fails with an error that says so.
#include "document/shop/Shop.h"

#include "common/values/RuntimeError.h"

namespace kvo::shop {

ObjectRef NewConnection(const std::string&) {
  throw RuntimeError(ErrorNumber::driverNotFound, "KVO_SHOP=OFF");
}

ObjectRef NewRecordset() { throw RuntimeError(ErrorNumber::driverNotFound, "KVO_SHOP=OFF"); }

}  // namespace kvo::shop
