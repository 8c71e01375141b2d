#include "host/headless/Xml.h"

#include <cstddef>

namespace kvo {
namespace {

constexpr std::string_view kNoXml = "\xEF\xBF\xBD";  // U+FFFD

// Whether a character starts here, of three bytes, that XML does not know: half of a surrogate
// pair, U+FFFE or U+FFFF.
bool IsNoCharacter(std::string_view text) {
  if (text.size() < kNoXml.size()) return false;
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
        if (IsNoCharacter(text.substr(i))) {
          out += kNoXml;
          i += kNoXml.size() - 1;
        } else {
          out += static_cast<unsigned char>(c) < 0x20 ? ' ' : c;
        }
    }
  }
}

}  // namespace kvo
