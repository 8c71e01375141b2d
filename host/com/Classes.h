// The library's classes under the names and ids of COM.
#pragma once

#include <algorithm>
#include <array>
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

// What errors name as their source that come from no class in particular: the library's name, here
// as Windows spells texts.
inline constexpr auto kLibraryNameUnits = [] {
  std::array<wchar_t, kLibraryName.size()> units{};
  std::ranges::copy(kLibraryName, units.begin());
  return units;
}();
inline constexpr std::wstring_view kLibrarySource(kLibraryNameUnits.data(),
                                                  kLibraryNameUnits.size());

// "KVOPDesignObjects.DTCPrint"
std::wstring ProgId(std::string_view className);

}  // namespace kvo::com
