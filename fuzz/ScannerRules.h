// What must hold for the page scanner whatever bytes it reads: it finds what a reading byte by byte
// finds, which knows nothing of blocks and shortcuts.
#pragma once

#include <string>

namespace kvo::page {

// Where the two differ, in words; empty when they do not.
std::string ScannerDifference(const std::string& page);

}  // namespace kvo::page
