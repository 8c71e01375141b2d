#pragma once

#include <string>
#include <string_view>

namespace kvo {

// Appends a text as the content of an XML or HTML element or of a quoted attribute. Of
// what XML cannot hold at all, control characters become blanks, anything else U+FFFD.
void AppendXml(std::string& out, std::string_view text);

}  // namespace kvo
