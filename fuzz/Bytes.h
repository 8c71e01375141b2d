// A fuzzer's bytes read as a story: choices and texts in turn. Readable characters stand for
// themselves, so that an input of the corpus can be written and understood by hand.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kvo {

class Bytes {
 public:
  explicit Bytes(std::string_view bytes) : rest_(bytes) {}

  bool AtEnd() const { return rest_.empty(); }

  // A NUL beyond the end.
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

  // A number below `count`, which is not 0: "0" is 0, "1" is 1, ...
  std::size_t Below(std::size_t count) { return static_cast<unsigned char>(Next() - '0') % count; }
  // One of some characters: itself, or for any other byte whichever its number leads to.
  char OneOf(std::string_view characters) {
    const char next = Next();
    if (characters.find(next) != std::string_view::npos) return next;
    return characters[static_cast<unsigned char>(next) % characters.size()];
  }
  // To the end of the line; \r \n \0 \\ stand for what they usually do.
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
