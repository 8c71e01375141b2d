// What holds for the preview of any page.
#pragma once

#include <string_view>

namespace kvo::preview {

// The input is a page, whose fields may be called "a", "Name" and "Age". Throws std::logic_error
// when a rule is broken.
void CheckPreview(std::string_view input);

}  // namespace kvo::preview
