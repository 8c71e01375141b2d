// Writes tags of the template language into a growing text. Nothing here allocates but `out`.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "common/text/modGlobal.h"

namespace kvo {

// "<ns:name", then attributes, then Close() or CloseEmpty(). Gathers short pieces: `out` is
// complete only after the tag is closed.
class TagWriter {
 public:
  TagWriter(std::string& out, std::string_view ns, std::string_view name) : out_(out) {
    Append("<", ns, ":", name);
  }
  TagWriter(const TagWriter&) = delete;
  TagWriter& operator=(const TagWriter&) = delete;

  // The one attribute rule: name="value", a bare ampersand in the value escaped, nothing else -
  // name and double quotes go out as they stand.
  void Attribute(std::string_view name, std::string_view value) {
    if (value.find('&') == std::string_view::npos) return AttributeAsIs(name, value);
    AttributeWith(name, value, AppendFixAmpersands);
  }
  // For values that follow a rule of their own.
  void AttributeAsIs(std::string_view name, std::string_view value) {
    Append(" ", name, "=\"", value, "\"");
  }
  void AttributeWith(std::string_view name, std::string_view value,
                     void (*append)(std::string& out, std::string_view value)) {
    Append(" ", name, "=\"");
    Flush();
    append(out_, value);
    Append("\"");
  }

  void CloseEmpty() {
    Append("/>");
    Flush();
  }
  void Close() {
    Append(">");
    Flush();
  }

 private:
  static std::string_view View(std::string_view text) { return text; }
  template <std::size_t size>  // a constant size: copied without a call
  static std::string_view View(const char (&literal)[size]) {
    return {literal, size - 1};
  }

  template <class... Pieces>
  void Append(const Pieces&... pieces) {
    const std::size_t size = (View(pieces).size() + ...);
    if (size > gathered_.size() - used_) Flush();
    if (size > gathered_.size()) {
      ((out_ += View(pieces)), ...);
      return;
    }
    char* to = gathered_.data() + used_;
    ((to += View(pieces).copy(to, size)), ...);
    used_ += size;
  }
  void Flush() {
    out_.append(gathered_.data(), used_);
    used_ = 0;
  }

  std::string& out_;
  std::array<char, 512> gathered_;  // deliberately not initialised
  std::size_t used_ = 0;
};

inline void AppendEndTag(std::string& out, std::string_view ns, std::string_view name) {
  out += "</";
  out += ns;
  out += ':';
  out += name;
  out += '>';
}

}  // namespace kvo
