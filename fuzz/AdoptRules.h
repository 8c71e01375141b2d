// What holds for the take-over of any page.
#pragma once

#include <string_view>

namespace kvo::adopt {

// The input is a page, whose placeholders may be called "a", "Name" and "Age". Throws
// std::logic_error when a rule is broken.
void CheckAdopt(std::string_view input);

}  // namespace kvo::adopt
