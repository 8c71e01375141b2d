#include "host/page/Scanner.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

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

// The first of one or two characters in [at, end); `end` when there is none. Meant for the short
// distances within tags, where a call of the library's search costs more than the search.
template <char... wanted>
const char* FindNear(const char* at, const char* end) {
#if defined(__SSE2__)
  for (; end - at >= 16; at += 16) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
    __m128i found = _mm_setzero_si128();
    ((found = _mm_or_si128(found, _mm_cmpeq_epi8(bytes, _mm_set1_epi8(wanted)))), ...);
    if (const int mask = _mm_movemask_epi8(found); mask != 0)
      return at + std::countr_zero(static_cast<unsigned>(mask));
  }
#endif
  while (at < end && ((*at != wanted) && ...)) ++at;
  return at;
}

// Moves from between attributes behind one of them, or to the ">" of the tag; nullptr when the text
// ends first.
const char* SkipAttribute(const char* at, const char* end) {
  while (Is(*at, kSpace) || *at == '/') ++at;
  if (at >= end) return nullptr;
  if (*at == '>') return at;
  at = SkipSpace(RunEnd(at + 1, end, kNameEnd));
  if (*at != '=') return at;
  at = SkipSpace(at + 1);
  if (*at != '"' && *at != '\'') return RunEnd(at, end, kUnquotedEnd);
  at = static_cast<const char*>(std::memchr(at + 1, *at, static_cast<std::size_t>(end - at - 1)));
  return at == nullptr ? nullptr : at + 1;
}

const char* TagNameEnd(const char* name, const char* end) {
  return RunEnd(name, end, kTagNameEnd | kNul);
}

// The next "<"; `end` when there is none.
const char* FindTagStart(const char* at, const char* end) {
  constexpr std::ptrdiff_t kNear = 64;
  if (end - at > kNear) {
    const char* const near = FindNear<'<'>(at, at + kNear);
    if (near != at + kNear) return near;
    at = near;
  }
  const void* const found = std::memchr(at, '<', static_cast<std::size_t>(end - at));
  return found == nullptr ? end : static_cast<const char*>(found);
}

bool IsNameCharacter(char c) { return IsLetter(c) || (c >= '0' && c <= '9') || c == '-'; }

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
    // As most tags are written: names that end at "=", values in quotes.
    const char* next = FindNear<'=', '>'>(at, end);
    if (next == end) break;
    if (*next == '>') {
      at_ = static_cast<std::size_t>(next + 1 - begin);
      return;
    }
    if (next == at || !IsNameCharacter(next[-1]) || (next[1] != '"' && next[1] != '\'')) {
      // Anything else, one attribute at a time.
      next = SkipAttribute(at, end);
      if (next == nullptr) break;
      at = next;
      continue;
    }
    const char* const value = next + 2;
    at = next[1] == '"' ? FindNear<'"'>(value, end) : FindNear<'\''>(value, end);
    if (at == end) break;
    ++at;
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
  while (at_ < text_.size()) {
    const char* const at = FindTagStart(begin + at_, end);
    at_ = static_cast<std::size_t>(at - begin);
    if (at == end) break;
    if (IsLetter(at[1])) {
      if (HasNameAt(at + 1, "object") && Is(at[7], kTagNameEnd)) return Kind::object;
      SkipStartTag();
    } else if (at[1] == '/') {
      SkipEndTag();
    } else if (at[1] == '!') {
      if (at[2] == '-' && at[3] == '-' && at[4] == 'K') {
        if (text_.compare(at_, kSpanStart.size(), kSpanStart) == 0) return Kind::spanStart;
        if (text_.compare(at_, kSpanEnd.size(), kSpanEnd) == 0) return Kind::spanEnd;
      }
      SkipMarkup();
    } else if (at[1] == '?') {
      SkipMarkup();
    } else {
      ++at_;
    }
  }
  return Kind::end;
}

void Scanner::SkipOne() {
  const char second = at_ + 1 < text_.size() ? text_[at_ + 1] : '\0';
  if (IsLetter(second)) return SkipStartTag();
  if (second == '/') return SkipEndTag();
  if (second == '!' || second == '?') return SkipMarkup();
  ++at_;
}

// The rest of the tag from the end of its name; false when the text ends first.
bool Scanner::SkipTag(const char* nameEnd) {
  const std::size_t at = static_cast<std::size_t>(nameEnd - text_.data());
  if (*nameEnd == '>') {
    at_ = at + 1;
    return true;
  }
  TagReader tag(text_, at);
  tag.Skip();
  at_ = tag.Position();
  return !tag.CutOff();
}

void Scanner::SkipStartTag() {
  const char* const name = text_.data() + at_ + 1;
  const char* const nameEnd = TagNameEnd(name, text_.data() + text_.size());
  if (!SkipTag(nameEnd)) return;
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

void Scanner::SkipEndTag() {
  const char* const name = text_.data() + at_ + 2;
  if (!IsLetter(*name)) return SkipMarkup();
  SkipTag(TagNameEnd(name, text_.data() + text_.size()));
}

void Scanner::SkipMarkup() {
  if (text_.compare(at_, kCommentStart.size(), kCommentStart) == 0) {
    at_ = std::min(EndOfComment(text_, at_), text_.size());
    return;
  }
  if (text_.substr(at_, 9) == "<![CDATA[") return SkipCData();
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
