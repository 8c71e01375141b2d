// As kvo-shop finds it: linked.
#include "apps/kvo/Shop.h"
#include "document/shop/Shop.h"

namespace kvo {

Shop FindShop() { return {shop::NewConnection, shop::NewRecordset}; }

}  // namespace kvo
