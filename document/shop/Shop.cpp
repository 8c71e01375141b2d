#include "document/shop/Shop.h"

#include "document/shop/Connection.h"
#include "document/shop/Recordset.h"

namespace kvo::shop {

ObjectRef NewConnection(const std::string& connectionString) {
  return std::make_shared<Connection>(connectionString);
}

ObjectRef NewRecordset() { return std::make_shared<Recordset>(); }

}  // namespace kvo::shop
