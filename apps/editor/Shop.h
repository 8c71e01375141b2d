// The shop database, where this build has it.
#pragma once

#include "document/office/Office.h"

namespace kvo::editor {

office::ConnectionFactory ShopConnections();
std::function<ObjectRef()> ShopRecordsets();

}  // namespace kvo::editor
