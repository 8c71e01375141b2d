#include "host/headless/TextLines.h"

#include "common/forms/FormControls.h"
#include "host/headless/HeadlessPlatform.h"

namespace kvo {
namespace {

void SetParagraph(std::string_view text, FontWeight weight, int width,
                  std::vector<std::string>& lines) {
  const auto fits = [&](std::string_view part) { return TahomaTextWidth(part, weight) <= width; };
  while (!fits(text)) {
    // Takes as many words as fit; of a word that fits no line, as many characters, at least one.
    std::size_t end = 0;
    for (std::size_t blank = text.find(' ');
         blank != std::string_view::npos && fits(text.substr(0, blank));
         blank = text.find(' ', blank + 1))
      end = blank;
    std::size_t next = end + 1;
    if (end == 0) {
      end = CharacterOffset(text, 1);
      while (end < text.size() && fits(text.substr(0, end + CharacterOffset(text.substr(end), 1))))
        end += CharacterOffset(text.substr(end), 1);
      next = end;
      if (end == text.size()) break;
    }
    lines.emplace_back(text.substr(0, end));
    text.remove_prefix(next);
  }
  lines.emplace_back(text);
}

}  // namespace

std::vector<std::string> TextLines(std::string_view text, FontWeight weight, int width) {
  std::vector<std::string> lines;
  for (;;) {
    const std::size_t end = text.find('\n');
    std::string_view paragraph = text.substr(0, end);
    if (paragraph.ends_with('\r')) paragraph.remove_suffix(1);
    SetParagraph(paragraph, weight, width, lines);
    if (end == std::string_view::npos) return lines;
    text.remove_prefix(end + 1);
  }
}

}  // namespace kvo
