// The page scanner finds the same, whatever bytes it reads, as a plain byte-by-byte reader without
// blocks or shortcuts.
#pragma once

#include <string>

namespace kvo::page {

// Returns the difference between the two in words; empty when they agree.
std::string ScannerDifference(const std::string& page);

}  // namespace kvo::page
