// Writes tags of the template language into a growing text. Nothing here allocates but `out`.
#pragma once

#include <string>
#include <string_view>

#include "common/modGlobal.h"

namespace kvo {

// "<ns:name", then attributes, then one of the ends.
class TagWriter {
 public:
  TagWriter(std::string& out, std::string_view ns, std::string_view name) : out_(out) {
    out_ += '<';
    out_ += ns;
    out_ += ':';
    out_ += name;
  }

  // The one attribute rule: name="value", a bare ampersand in the value escaped, nothing else -
  // a double quote inside the value goes out as it stands.
  TagWriter& Attribute(std::string_view name, std::string_view value) {
    Begin(name);
    AppendFixAmpersands(out_, value);
    out_ += '"';
    return *this;
  }
  TagWriter& AttributeIfSet(std::string_view name, std::string_view value) {
    return value.empty() ? *this : Attribute(name, value);
  }
  // For values that follow a rule of their own.
  TagWriter& AttributeAsIs(std::string_view name, std::string_view value) {
    Begin(name);
    out_ += value;
    out_ += '"';
    return *this;
  }
  TagWriter& AttributeWith(std::string_view name, std::string_view value,
                           void (*append)(std::string& out, std::string_view value)) {
    Begin(name);
    append(out_, value);
    out_ += '"';
    return *this;
  }

  void CloseEmpty() { out_ += "/>"; }
  void Close() { out_ += '>'; }

 private:
  void Begin(std::string_view name) {
    out_ += ' ';
    out_ += name;
    out_ += "=\"";
  }

  std::string& out_;
};

inline void AppendEndTag(std::string& out, std::string_view ns, std::string_view name) {
  out += "</";
  out += ns;
  out += ':';
  out += name;
  out += '>';
}

}  // namespace kvo
