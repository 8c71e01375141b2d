#include "apps/editor/Shop.h"

#include "document/shop/Shop.h"

namespace kvo::editor {

office::ConnectionFactory ShopConnections() { return shop::NewConnection; }
std::function<ObjectRef()> ShopRecordsets() { return shop::NewRecordset; }

}  // namespace kvo::editor
