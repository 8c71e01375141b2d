#pragma once

#include <string>
#include <string_view>

namespace kvo {

// Appends a text as content of an XML or HTML element or of a quoted attribute. Replaces characters
// that XML does not allow: control characters by blanks, others by U+FFFD.
void AppendXml(std::string& out, std::string_view text);

}  // namespace kvo
