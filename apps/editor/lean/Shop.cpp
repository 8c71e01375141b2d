// Without a database: pages that ask for products get none.
#include "apps/editor/Shop.h"

namespace kvo::editor {

office::ConnectionFactory ShopConnections() { return {}; }
std::function<ObjectRef()> ShopRecordsets() { return {}; }

}  // namespace kvo::editor
