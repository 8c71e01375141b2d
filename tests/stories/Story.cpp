#include "tests/stories/Story.h"

#include <random>
#include <span>
#include <string_view>

namespace kvo {
namespace {

// Values that may appear in a page; `\` is an escape (fuzz/Bytes.h).
constexpr std::string_view kStored[] = {
    "",
    "a",
    "true",
    "false",
    "1",
    "2",
    "5",
    "100",
    "EMAIL",
    "a&b",
    "#FF0000",
    "rot",
    "5 Pixel",
    "12 Punkte",
    "12pt",
    "left",
    "top",
    "kv:@lt;b@gt;",
    "100,2\\,0",
    "100,300",
    "a|1||b|2",
    "b|x|y||a|",
    "kein Strich",
    "%a%",
    " %#customer.F1#==2% ",
    "dd.mm.yyyy",
    "#,##0.00",
    "Standard-Währung",
    "http://a.b/c/",
    "zwei\\r\\nZeilen",
    "\\r\\n\\r\\n",
    "a\\rb\\nc",
    "a\\0b",
    "ä😀e",
    "\xFF\xE2\x80\xA8z",
    "]]>",
    "eine längere Zeile, die in keinem der Felder ganz zu sehen ist, weil sie nicht endet",
};

// Texts a person can type: no NUL, no invalid character.
constexpr std::string_view kTyped[] = {
    "a", "x y", " ",   "0",      "12",       "#00FF00", "ä😀",         "<b>",
    "&", "%",   "a|b", "\\r\\n", "a\\r\\nb", "5 Pixel", "dd.mm.yyyy", "Abc, def.",
};

class Writer {
 public:
  explicit Writer(std::uint32_t seed) : random_(seed) {}

  std::string Opening() {
    constexpr std::size_t kClasses = 12;
    constexpr std::size_t kPages = 13;
    std::string opening{Digit(kClasses), Below(4) > 0 ? '0' : Digit(kPages + 1), '\n'};
    for (std::size_t keys = Below(8); keys > 0; --keys) {
      opening += static_cast<char>('a' + Below(20));
      opening += OneOf("==========##++--?@!");
      opening += OneOf(kStored);
      opening += '\n';
    }
    return opening + '\n';
  }

  std::string Event() {
    constexpr std::size_t kControls = 40;
    const char event = OneOf("ffiittttkkkkkkccccccooorrdsssbbvvvxmwAAPPPSGCNNF");
    std::string text(1, event);
    switch (event) {
      case 't':
      case 'N':
        return text + std::string(OneOf(kTyped)) + '\n';
      case 'i':
      case 'o':
      case 'd':
      case 's':
      case 'b':
        return text + Digit(kControls) + Digit(12);
      case 'v':
        return text + Digit(kControls) + Digit(12) + Digit(12);
      case 'r': {
        const std::size_t rows = Below(4);
        text += {Digit(kControls), static_cast<char>('0' + rows)};
        for (std::size_t row = 0; row < rows; ++row) text += Digit(5);
        return text;
      }
      case 'x':
        return text + Digit(kControls) + Digit(3);
      case 'F':
        return text + Digit(70) + Digit(70) + Digit(70);
      case 'G':
        return "GSG";  // lets the page react; when widgets fetch their contents is up to them
      case 'A':
      case 'S':
      case 'C':
      case 'w':
        return text;
      default:
        return text + Digit(kControls);
    }
  }

  std::size_t Below(std::size_t count) { return random_() % count; }

 private:
  char Digit(std::size_t count) { return static_cast<char>('0' + Below(count)); }
  char OneOf(std::string_view characters) { return characters[Below(characters.size())]; }
  std::string_view OneOf(std::span<const std::string_view> texts) {
    return texts[Below(texts.size())];
  }

  std::mt19937 random_;  // whose numbers the standard defines, unlike those of distributions
};

}  // namespace

std::string Story::Bytes() const {
  std::string bytes = opening;
  for (const std::string& event : events) bytes += event;
  return bytes;
}

Story WriteStory(std::uint32_t seed) {
  constexpr std::size_t kFewest = 10;
  constexpr std::size_t kMost = 50;
  Writer writer(seed);
  Story story{seed, writer.Opening(), {}};
  story.events.resize(kFewest + writer.Below(kMost - kFewest));
  for (std::string& event : story.events) event = writer.Event();
  return story;
}

}  // namespace kvo
