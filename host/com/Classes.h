// The library's classes under the names and ids of COM.
#pragma once

#include <string>
#include <string_view>

#include "host/com/Ole.h"
#include "host/registration/classes.h"

namespace kvo::com {

const RegisteredControl* FindControl(REFCLSID classId);
const RegisteredPage* FindPage(REFCLSID classId);

// A page's class name, or the class id in registry form when it is not of this library.
std::string PageName(REFCLSID classId);
// The way back. RuntimeError 429 for a name that is neither.
CLSID PageClassId(std::string_view name);

// "KVOPDesignObjects.DTCPrint"
std::wstring ProgId(std::string_view className);

}  // namespace kvo::com
