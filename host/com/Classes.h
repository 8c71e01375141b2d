// The library's classes by their COM names and ids.
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

// Returns a page's class name, or for a foreign page its class id in registry form.
std::string PageName(REFCLSID classId);
// Reverses PageName. Throws RuntimeError 429 for a name that is neither.
CLSID PageClassId(std::string_view name);

// The source of errors that belong to no class: the library's name as a wide string.
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
