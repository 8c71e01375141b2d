// Writes tags of the template language into a growing text. Nothing here allocates but `out`.
#pragma once

#include <string>
#include <string_view>

#include "common/text/modGlobal.h"

namespace kvo {

// "<ns:name", then attributes, then one of the ends.
class TagWriter {
 public:
  TagWriter(std::string& out, std::string_view ns, std::string_view name) : out_(out) {
    Append("<", ns, ":", name);
  }

  // The one attribute rule: name="value", a bare ampersand in the value escaped, nothing else -
  // name and double quotes go out as they stand.
  void Attribute(std::string_view name, std::string_view value) {
    AttributeWith(name, value, AppendFixAmpersands);
  }
  // For values that follow a rule of their own.
  void AttributeAsIs(std::string_view name, std::string_view value) {
    Append(" ", name, "=\"", value, "\"");
  }
  void AttributeWith(std::string_view name, std::string_view value,
                     void (*append)(std::string& out, std::string_view value)) {
    Append(" ", name, "=\"");
    append(out_, value);
    out_ += '"';
  }

  void CloseEmpty() { out_ += "/>"; }
  void Close() { out_ += '>'; }

 private:
  template <class... Pieces>
  void Append(const Pieces&... pieces) {
    ((out_ += pieces), ...);
  }

  std::string& out_;
};

inline void AppendEndTag(std::string& out, std::string_view ns, std::string_view name) {
  for (const std::string_view piece :
       {std::string_view("</"), ns, std::string_view(":"), name, std::string_view(">")})
    out += piece;
}

}  // namespace kvo
