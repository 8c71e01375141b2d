#pragma once

#include <string>
#include <string_view>

namespace kvo {

// Appends a text as the content of an XML or HTML element or of a quoted attribute. Control
// characters, which XML cannot hold at all, become blanks.
void AppendXml(std::string& out, std::string_view text);

}  // namespace kvo
