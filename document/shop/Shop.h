// The shop database. Late bound: a connection and a recordset have the members that
// common/values/Recordset.h lists.
#pragma once

#include <string>

#include "common/values/Variant.h"

namespace kvo::shop {

// The connection of a connection string (its forms: Address.h). Nothing is opened yet, so nothing
// fails yet. Fit to be an Office's factory.
ObjectRef NewConnection(const std::string& connectionString);

// Not opened yet. Fit for Platform::NewRecordset.
ObjectRef NewRecordset();

}  // namespace kvo::shop
