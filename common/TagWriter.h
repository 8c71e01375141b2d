// Writes tags of the template language into a growing text. Nothing here allocates but `out`.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

#include "common/modGlobal.h"

namespace kvo {

// An attribute's name as a template argument, so that ` name="` is one text made by the compiler.
template <std::size_t size>
struct AttributeName {
  char begin[size + 3] = {' '};  // size counts the terminating NUL, which makes room for one more

  consteval AttributeName(const char (&name)[size]) {
    std::copy_n(name, size - 1, begin + 1);
    begin[size] = '=';
    begin[size + 1] = '"';
  }
  constexpr std::string_view Begin() const { return {begin, size + 2}; }
};

// "<ns:name", then attributes, then one of the ends. While a tag is being written, `out` is longer
// than its text: the writer lets it grow in steps and cuts it when the tag is closed or given up.
class TagWriter {
 public:
  TagWriter(std::string& out, std::string_view ns, std::string_view name)
      : out_(out), used_(out.size()) {
    MakeRoom(ns.size() + name.size() + 2);
    Put('<');
    Put(ns);
    Put(':');
    Put(name);
  }
  TagWriter(const TagWriter&) = delete;
  TagWriter& operator=(const TagWriter&) = delete;
  ~TagWriter() {
    if (open_) Cut();
  }

  // The one attribute rule: name="value", a bare ampersand in the value escaped, nothing else -
  // a double quote inside the value goes out as it stands.
  template <AttributeName name>
  TagWriter& Attribute(std::string_view value) {
    return Begun(name.Begin(), value);
  }
  template <AttributeName name>
  TagWriter& AttributeIfSet(std::string_view value) {
    return value.empty() ? *this : Attribute<name>(value);
  }
  // For values that follow a rule of their own.
  template <AttributeName name>
  TagWriter& AttributeAsIs(std::string_view value) {
    MakeRoom(name.Begin().size() + value.size() + 1);
    Put(name.Begin());
    Put(value);
    Put('"');
    return *this;
  }
  template <AttributeName name>
  TagWriter& AttributeWith(std::string_view value,
                           void (*append)(std::string& out, std::string_view value)) {
    MakeRoom(name.Begin().size());
    Put(name.Begin());
    AppendWith(value, append);
    return *this;
  }
  // For a name that the author chose. It goes out as it stands.
  TagWriter& NamedAttribute(std::string_view name, std::string_view value) {
    MakeRoom(name.size() + 1);
    Put(' ');
    Put(name);
    return Begun("=\"", value);
  }

  void CloseEmpty() { End("/>"); }
  void Close() { End(">"); }

 private:
  TagWriter& Begun(std::string_view begin, std::string_view value) {
    MakeRoom(begin.size() + value.size() + 1);
    Put(begin);
    if (value.find('&') == std::string_view::npos) {
      Put(value);
      Put('"');
    } else {
      AppendWith(value, AppendFixAmpersands);
    }
    return *this;
  }
  void MakeRoom(std::size_t size) {
    constexpr std::size_t kStep = 128;
    if (out_.size() - used_ < size) out_.resize(used_ + size + kStep);
  }
  // Room has been made.
  void Put(char c) { out_[used_++] = c; }
  void Put(std::string_view text) {
    std::memcpy(out_.data() + used_, text.data(), text.size());
    used_ += text.size();
  }
  void AppendWith(std::string_view value, void (*append)(std::string&, std::string_view)) {
    Cut();
    append(out_, value);
    out_ += '"';
    used_ = out_.size();
  }
  void End(std::string_view end) {
    MakeRoom(end.size());
    Put(end);
    Cut();
    open_ = false;
  }
  void Cut() { out_.resize(used_); }

  std::string& out_;
  std::size_t used_;  // length of the text so far
  bool open_ = true;  // no end yet: afterwards `out` is the caller's alone
};

inline void AppendEndTag(std::string& out, std::string_view ns, std::string_view name) {
  out += "</";
  out += ns;
  out += ':';
  out += name;
  out += '>';
}

}  // namespace kvo
