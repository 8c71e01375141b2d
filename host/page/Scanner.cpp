#include "host/page/Scanner.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace kvo::page {
namespace {

constexpr std::size_t npos = std::string_view::npos;

// What a byte means inside a tag. A NUL stops every loop, since one stands behind the text.
enum : unsigned char {
  kSpace = 1,
  kTagNameEnd = 2,
  kNameEnd = 4,      // ends the name of an attribute
  kUnquotedEnd = 8,  // ends a value without quotes
  kQuotedStop = 16,  // quotes: may end a value
  kSpecial = 32,     // see RawAttribute::special
  kNul = 64,
};

constexpr std::array<unsigned char, 256> kMeaning = [] {
  std::array<unsigned char, 256> meaning{};
  const auto add = [&](char c, int what) {
    auto& entry = meaning[static_cast<unsigned char>(c)];
    entry = static_cast<unsigned char>(entry | what);
  };
  for (const char c : {' ', '\t', '\n', '\r', '\f'})
    add(c, kSpace | kTagNameEnd | kNameEnd | kUnquotedEnd);
  add('/', kTagNameEnd | kNameEnd);
  add('=', kNameEnd);
  add('>', kTagNameEnd | kNameEnd | kUnquotedEnd | kSpecial);
  add('"', kQuotedStop);
  add('\'', kQuotedStop);
  add('&', kSpecial);
  add('\0', kNul | kNameEnd | kUnquotedEnd | kQuotedStop);
  for (unsigned byte = 0x80; byte < 0x100; ++byte) meaning[byte] = kSpecial;
  return meaning;
}();

unsigned Meaning(char c) { return kMeaning[static_cast<unsigned char>(c)]; }
bool Is(char c, unsigned what) { return (Meaning(c) & what) != 0; }

bool IsLetter(char c) {
  const char lower = static_cast<char>(c | 0x20);
  return lower >= 'a' && lower <= 'z';
}

bool HasNameAt(const char* at, std::string_view name) {
  for (const char c : name)
    if (static_cast<char>(*at++ | 0x20) != c) return false;
  return true;
}

// The end of a run without the given meanings. A NUL inside the text is as any other byte.
const char* RunEnd(const char* at, const char* end, unsigned stops) {
  for (;;) {
    while (!Is(*at, stops)) ++at;
    if (*at != '\0' || at >= end) return at;
    ++at;
  }
}

const char* SkipSpace(const char* at) {
  while (Is(*at, kSpace)) ++at;
  return at;
}

}  // namespace

bool TagReader::Next(RawAttribute& attribute) {
  const char* const begin = text_.data();
  const char* const end = begin + text_.size();
  const char* at = begin + at_;
  const auto stopAt = [&](const char* where) { at_ = static_cast<std::size_t>(where - begin); };
  const auto cutOff = [&] {
    cutOff_ = true;
    stopAt(end);
    return false;
  };

  while (Is(*at, kSpace) || *at == '/') ++at;
  if (at >= end) return cutOff();
  if (*at == '>') {
    stopAt(at + 1);
    return false;
  }
  // The first character of a name may be anything, "=" included.
  const char* const name = at;
  at = RunEnd(at + 1, end, kNameEnd);
  attribute.name = {name, static_cast<std::size_t>(at - name)};
  attribute.value = {};
  attribute.hasValue = attribute.special = false;
  at = SkipSpace(at);
  if (*at != '=' || at >= end) {
    if (at >= end) return cutOff();
    stopAt(at);
    return true;
  }
  at = SkipSpace(at + 1);
  if (at >= end) return cutOff();
  attribute.hasValue = *at != '>';
  if (*at == '"' || *at == '\'') {
    const char quote = *at++;
    const char* const value = at;
    unsigned seen = 0;
    for (;;) {
      unsigned meaning = Meaning(*at);
      while ((meaning & kQuotedStop) == 0) {
        seen |= meaning;
        meaning = Meaning(*++at);
      }
      if (*at == quote) break;
      if (at >= end) return cutOff();
      ++at;
    }
    attribute.value = {value, static_cast<std::size_t>(at - value)};
    attribute.special = (seen & kSpecial) != 0;
    stopAt(at + 1);
    return true;
  }
  const char* const value = at;
  at = RunEnd(at, end, kUnquotedEnd);
  if (at >= end) return cutOff();
  attribute.value = {value, static_cast<std::size_t>(at - value)};
  attribute.special = true;
  stopAt(at);
  return true;
}

void TagReader::Skip() {
  const char* const begin = text_.data();
  const char* const end = begin + text_.size();
  const char* at = begin + at_;
  for (;;) {
    while (Is(*at, kSpace) || *at == '/') ++at;
    if (at >= end) break;
    if (*at == '>') {
      at_ = static_cast<std::size_t>(at + 1 - begin);
      return;
    }
    at = SkipSpace(RunEnd(at + 1, end, kNameEnd));
    if (*at != '=') continue;
    at = SkipSpace(at + 1);
    if (*at == '"' || *at == '\'') {
      at = static_cast<const char*>(
          std::memchr(at + 1, *at, static_cast<std::size_t>(end - at - 1)));
      if (at == nullptr) break;
      ++at;
    } else {
      at = RunEnd(at, end, kUnquotedEnd);
    }
  }
  at_ = text_.size();
  cutOff_ = true;
}

bool IsTagAt(std::string_view text, std::size_t at, std::string_view start, std::string_view name) {
  const std::size_t behind = at + start.size() + name.size();
  return behind < text.size() && text.compare(at, start.size(), start) == 0 &&
         HasNameAt(text.data() + at + start.size(), name) && Is(text[behind], kTagNameEnd);
}

std::size_t EndOfPlainText(std::string_view text, std::size_t at) {
  while (!Is(text.data()[at], kQuotedStop | kSpecial)) ++at;
  return at;
}

std::size_t EndOfComment(std::string_view text, std::size_t at) {
  const std::size_t body = at + kCommentStart.size();
  // "-->", whose dashes may be those of the start ("<!-->"), or "--!>", whose dashes may not.
  for (std::size_t close = body; (close = text.find('>', close)) != npos; ++close) {
    if (text[close - 1] == '-' && text[close - 2] == '-') return close + 1;
    if (close >= body + 3 && text[close - 1] == '!' && text[close - 2] == '-' &&
        text[close - 3] == '-')
      return close + 1;
  }
  return npos;
}

Scanner::Kind Scanner::Next() {
  const char* const begin = text_.data();
  const char* const end = begin + text_.size();
  for (;;) {
    if (at_ >= text_.size()) break;
    const void* const found = std::memchr(begin + at_, '<', text_.size() - at_);
    if (found == nullptr) break;
    const char* const at = static_cast<const char*>(found);
    at_ = static_cast<std::size_t>(at - begin);
    if (IsLetter(at[1])) {
      if (HasNameAt(at + 1, "object") && Is(at[7], kTagNameEnd) && at + 7 < end)
        return Kind::object;
      SkipStartTag();
    } else if (at[1] == '!') {
      if (text_.substr(at_, 15) == kSpanStart.substr(0, 15)) {
        if (text_.substr(at_, kSpanStart.size()) == kSpanStart) return Kind::spanStart;
        if (text_.substr(at_, kSpanEnd.size()) == kSpanEnd) return Kind::spanEnd;
      }
      SkipMarkup();
    } else if (at[1] == '/' || at[1] == '?') {
      SkipMarkup();
    } else {
      ++at_;
    }
  }
  at_ = text_.size();
  return Kind::end;
}

void Scanner::SkipOne() {
  const char second = at_ + 1 < text_.size() ? text_[at_ + 1] : '\0';
  if (IsLetter(second)) return SkipStartTag();
  if (second == '!' || second == '/' || second == '?') return SkipMarkup();
  ++at_;
}

void Scanner::SkipStartTag() {
  const char* const begin = text_.data();
  const char* const name = begin + at_ + 1;
  const char* const nameEnd = RunEnd(name, begin + text_.size(), kTagNameEnd | kNul);
  TagReader tag(text_, static_cast<std::size_t>(nameEnd - begin));
  tag.Skip();
  at_ = tag.Position();
  if (tag.CutOff()) return;
  const char first = static_cast<char>(*name | 0x20);
  if (first != 's' && first != 't') return;
  const std::size_t length = static_cast<std::size_t>(nameEnd - name);
  const auto isNamed = [&](std::string_view wanted) {
    return length == wanted.size() && HasNameAt(name, wanted);
  };
  if (isNamed("script")) return SkipScript();
  for (const std::string_view rawText : {"style", "textarea", "title"})
    if (isNamed(rawText)) return SkipRawText(rawText);
}

void Scanner::SkipMarkup() {
  if (text_.substr(at_, kCommentStart.size()) == kCommentStart) {
    at_ = std::min(EndOfComment(text_, at_), text_.size());
    return;
  }
  if (text_.substr(at_, 9) == "<![CDATA[") return SkipCData();
  if (text_[at_ + 1] == '/' && at_ + 2 < text_.size() && IsLetter(text_[at_ + 2])) {
    const char* const begin = text_.data();
    const char* const nameEnd = RunEnd(begin + at_ + 2, begin + text_.size(), kTagNameEnd | kNul);
    TagReader tag(text_, static_cast<std::size_t>(nameEnd - begin));
    tag.Skip();
    at_ = tag.Position();
    return;
  }
  // A document type, or what browsers take for a comment: "<?", "</" without a letter, "<!".
  const std::size_t close = text_.find('>', at_ + 2);
  at_ = close == npos ? text_.size() : close + 1;
}

// A section that never ends is no section: browsers skip "<![CDATA[" as far as the next ">" then.
void Scanner::SkipCData() {
  std::size_t close = npos;
  if (!noCDataEnd_) {
    close = text_.find("]]>", at_ + 9);
    if (close != npos) {
      at_ = close + 3;
      return;
    }
    noCDataEnd_ = true;
  }
  close = text_.find('>', at_);
  at_ = close == npos ? text_.size() : close + 1;
}

bool Scanner::IsEndTagOf(std::size_t at, std::string_view name) const {
  return IsTagAt(text_, at, "</", name);
}

void Scanner::SkipRawText(std::string_view name) {
  while ((at_ = text_.find("</", at_)) != npos) {
    if (IsEndTagOf(at_, name)) return;
    at_ += 2;
  }
  at_ = text_.size();
}

// In a script, "<!--" begins a part in which "<script" and "</script" pair up, until "-->".
void Scanner::SkipScript() {
  enum { plain, escaped, doubleEscaped } state = plain;
  while (at_ < text_.size()) {
    if (state == plain) {
      at_ = text_.find('<', at_);
      if (at_ == npos) break;
      if (IsEndTagOf(at_, "script")) return;
      if (text_.substr(at_, kCommentStart.size()) == kCommentStart) {
        state = escaped;
        at_ += 2;  // the dashes may be those of "-->"
      } else {
        ++at_;
      }
      continue;
    }
    const char c = text_[at_];
    if (c == '-' && text_.substr(at_, kCommentEnd.size()) == kCommentEnd) {
      state = plain;
      at_ += kCommentEnd.size();
    } else if (c == '<' && IsEndTagOf(at_, "script")) {
      if (state == escaped) return;
      state = escaped;
      ++at_;
    } else if (c == '<' && state == escaped && IsTagAt(text_, at_, "<", "script")) {
      state = doubleEscaped;
      ++at_;
    } else {
      ++at_;
    }
  }
  at_ = text_.size();
}

}  // namespace kvo::page
