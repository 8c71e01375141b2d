// The shop database. Late bound: a connection and a recordset have the members that
// common/values/Recordset.h lists.
#pragma once

#include <string>

#include "common/values/Variant.h"

namespace kvo::shop {

// Makes a connection from a connection string (see Address.h). Opens nothing yet, so it does not
// fail. Usable as an Office's factory.
ObjectRef NewConnection(const std::string& connectionString);

// Makes a closed recordset. Usable as Platform::NewRecordset.
ObjectRef NewRecordset();

}  // namespace kvo::shop
