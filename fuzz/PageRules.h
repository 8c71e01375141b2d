// What must hold for the page file whatever bytes a page is made of. The fuzzer searches for bytes
// that break it; the tests replay every file in fuzz/corpus/page.
#pragma once

#include <string>
#include <string_view>

namespace kvo::page {

// The first rule that the page breaks, in words; empty when all hold.
std::string BrokenRule(std::string_view page);

}  // namespace kvo::page
