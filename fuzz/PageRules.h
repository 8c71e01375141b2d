// Rules that the page file obeys, whatever the bytes of the page. The fuzzer searches for bytes
// that break one; the tests replay every file in fuzz/corpus/page.
#pragma once

#include <string>
#include <string_view>

namespace kvo::page {

// Returns the first rule that the page breaks, in words; empty when all hold.
std::string BrokenRule(std::string_view page);

}  // namespace kvo::page
