#include "apps/kvo/FramedPage.h"

#include "document/page/Utf8.h"

namespace kvo {
namespace {

// Bytes that are not valid in the encoding become U+FFFD.
std::string InUtf8(std::string_view bytes, const page::PageEncoding& encoding) {
  std::string text;
  bytes.remove_prefix(page::PageEncoding::Mark(bytes));
  while (true) {
    const std::size_t invalid = encoding.Decode(bytes, text);
    if (invalid == std::string_view::npos) return text;
    page::AppendUtf8(text, page::kReplacementCharacter);
    bytes.remove_prefix(invalid + 1);
  }
}

// Escapes a text for an attribute in double quotes, or between two tags.
std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '&')
      escaped += "&amp;";
    else if (c == '"')
      escaped += "&quot;";
    else if (c == '<')
      escaped += "&lt;";
    else
      escaped += c;
  }
  return escaped;
}

// Keeps the bar from taking a part of the width, as on a phone. At the end, because in front of the
// doctype it would change how the page is laid out.
constexpr std::string_view kNoScrollBar =
    "<style>html{scrollbar-width:none}html::-webkit-scrollbar{display:none}</style>";

}  // namespace

std::string FramedPage(std::string_view inner, const page::PageEncoding& encoding, int width,
                       std::string_view title) {
  return "<!DOCTYPE html>\n<html>\n<head>\n<meta charset=\"utf-8\">\n<title>" + Escaped(title) +
         "</title>\n</head>\n<body style=\"margin:0;background:#e4e4e4\">\n"
         "<iframe sandbox width=\"" +
         std::to_string(width) +
         "\" style=\"display:block;margin:0 auto;height:100vh;border:0;background:#ffffff\" "
         "srcdoc=\"" +
         Escaped(InUtf8(inner, encoding)) + Escaped(kNoScrollBar) +
         "\"></iframe>\n</body>\n</html>\n";
}

}  // namespace kvo
