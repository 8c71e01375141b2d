#include "host/headless/Xml.h"

#include <cstddef>

namespace kvo {
namespace {

constexpr std::string_view kReplacementText = "\xEF\xBF\xBD";  // U+FFFD

// Whether the text begins with a three-byte character that XML does not allow: half of a surrogate
// pair, U+FFFE or U+FFFF.
bool IsInvalidInXml(std::string_view text) {
  if (text.size() < kReplacementText.size()) return false;
  if (text.starts_with("\xEF\xBF")) return static_cast<unsigned char>(text[2]) >= 0xBE;
  return text[0] == '\xED' && static_cast<unsigned char>(text[1]) >= 0xA0;
}

}  // namespace

void AppendXml(std::string& out, std::string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        if (IsInvalidInXml(text.substr(i))) {
          out += kReplacementText;
          i += kReplacementText.size() - 1;
        } else {
          out += static_cast<unsigned char>(c) < 0x20 ? ' ' : c;
        }
    }
  }
}

}  // namespace kvo
