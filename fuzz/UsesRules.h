// What holds for finding and renaming names in any page.
#pragma once

#include <string_view>

namespace kvo::uses {

// The input is a page. Throws std::logic_error when a rule is broken.
void CheckUses(std::string_view input);

}  // namespace kvo::uses
