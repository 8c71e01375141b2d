// Reads a fuzzer's bytes as a story, a sequence of choices and texts. Readable characters stand for
// themselves, so that a corpus file can be written and understood by hand.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kvo {

class Bytes {
 public:
  explicit Bytes(std::string_view bytes) : rest_(bytes) {}

  bool AtEnd() const { return rest_.empty(); }

  // Returns NUL at the end.
  char Next() {
    if (rest_.empty()) return '\0';
    const char next = rest_.front();
    rest_.remove_prefix(1);
    return next;
  }
  bool Skip(char wanted) {
    if (!rest_.starts_with(wanted)) return false;
    rest_.remove_prefix(1);
    return true;
  }

  // Returns a number below `count`, which must not be 0: '0' gives 0, '1' gives 1, ...
  std::size_t Below(std::size_t count) { return static_cast<unsigned char>(Next() - '0') % count; }
  // Returns the next byte if it is one of `characters`, or else maps it to one of them.
  char OneOf(std::string_view characters) {
    const char next = Next();
    if (characters.find(next) != std::string_view::npos) return next;
    return characters[static_cast<unsigned char>(next) % characters.size()];
  }
  // Reads to the end of the line; \r \n \0 \\ are escapes.
  std::string Text() {
    std::string text;
    while (!rest_.empty()) {
      const char next = Next();
      if (next == '\n') break;
      if (next != '\\') {
        text += next;
        continue;
      }
      const char escaped = Next();
      text += escaped == 'r' ? '\r' : escaped == 'n' ? '\n' : escaped == '0' ? '\0' : escaped;
    }
    return text;
  }

 private:
  std::string_view rest_;
};

}  // namespace kvo
