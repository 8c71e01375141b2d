// Writes tags of the template language into a growing text. Nothing here allocates but `out`.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

#include "common/text/modGlobal.h"

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

// Gathers short pieces and appends them to a growing text many at a time.
class TextGatherer {
 public:
  explicit TextGatherer(std::string& out) : out_(out) {}
  TextGatherer(const TextGatherer&) = delete;
  TextGatherer& operator=(const TextGatherer&) = delete;

  [[gnu::always_inline]] TextGatherer& operator<<(std::string_view text) {
    if (text.size() > sizeof gathered_ - used_) return AppendPast(text);
    std::memcpy(gathered_ + used_, text.data(), text.size());
    used_ += text.size();
    return *this;
  }
  // What has not been flushed is lost with the gatherer.
  void Flush() {
    out_.append(gathered_, used_);
    used_ = 0;
  }

 private:
  // Not inlined: seldom needed, and the usual way has to stay small.
  [[gnu::noinline]] TextGatherer& AppendPast(std::string_view text) {
    Flush();
    out_ += text;
    return *this;
  }

  std::string& out_;
  std::size_t used_ = 0;
  char gathered_[512];
};

// "<ns:name", then attributes, then one of the ends. `out` has the whole tag only after its end.
class TagWriter {
 public:
  TagWriter(std::string& out, std::string_view ns, std::string_view name) : out_(out), tag_(out) {
    tag_ << "<" << ns << ":" << name;
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
    tag_ << name.Begin() << value << "\"";
    return *this;
  }
  template <AttributeName name>
  TagWriter& AttributeWith(std::string_view value,
                           void (*append)(std::string& out, std::string_view value)) {
    tag_ << name.Begin();
    return AppendWith(value, append);
  }
  // For a name that the author chose. It goes out as it stands.
  TagWriter& NamedAttribute(std::string_view name, std::string_view value) {
    tag_ << " " << name;
    return Begun("=\"", value);
  }

  void CloseEmpty() { End("/>"); }
  void Close() { End(">"); }

 private:
  TagWriter& Begun(std::string_view begin, std::string_view value) {
    tag_ << begin;
    if (value.find('&') != std::string_view::npos) return AppendWith(value, AppendFixAmpersands);
    tag_ << value << "\"";
    return *this;
  }
  TagWriter& AppendWith(std::string_view value, void (*append)(std::string&, std::string_view)) {
    tag_.Flush();
    append(out_, value);
    tag_ << "\"";
    return *this;
  }
  void End(std::string_view end) {
    tag_ << end;
    tag_.Flush();
  }

  std::string& out_;
  TextGatherer tag_;
};

inline void AppendEndTag(std::string& out, std::string_view ns, std::string_view name) {
  TextGatherer tag(out);
  tag << "</" << ns << ":" << name << ">";
  tag.Flush();
}

}  // namespace kvo
