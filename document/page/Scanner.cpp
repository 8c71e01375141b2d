#include "document/page/Scanner.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "common/values/Ascii.h"

namespace kvo::page {
namespace {

// What a byte means inside a tag. A NUL stops every loop, since one stands behind the text.
enum : unsigned char {
  kSpace = 1,
  kTagNameEnd = 2,
  kNameEnd = 4,      // ends the name of an attribute
  kUnquotedEnd = 8,  // ends a value without quotes
  kQuotedStop = 16,  // quotes: may end a value
  kSpecial = 32,     // see RawAttribute::special
  kNul = 64,
  kStructure = 128,  // see Structure
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
  for (const char c : {'<', '>', '"', '\''}) add(c, kStructure);
  for (unsigned byte = 0x80; byte < 0x100; ++byte) meaning[byte] = kSpecial;
  return meaning;
}();

unsigned Meaning(char c) { return kMeaning[static_cast<unsigned char>(c)]; }
bool Is(char c, unsigned what) { return (Meaning(c) & what) != 0; }

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
  while (!Is(*name, kTagNameEnd | kNul)) ++name;
  return *name == '\0' ? RunEnd(name, end, kTagNameEnd | kNul) : name;
}

// Whether a character before "=" is surely the end of an attribute's name.
bool IsNameCharacter(char c) { return !Is(c, kNameEnd | kQuotedStop | kStructure); }

// Moves behind the ">" of a tag; nullptr when the text ends first.
[[gnu::noinline]] const char* SkipAttributes(const char* at, const char* end) {
  for (;;) {
    // As most tags are written: names that end at "=", values in quotes.
    const char* const next = FindNear<'=', '>'>(at, end);
    if (next == end) return nullptr;
    if (*next == '>') return next + 1;
    const char quote = next[1];
    if (next == at || !IsNameCharacter(next[-1]) || (quote != '"' && quote != '\'')) {
      // Anything else, one attribute at a time.
      at = SkipAttribute(at, end);
      if (at == nullptr) return nullptr;
      continue;
    }
    at = quote == '"' ? FindNear<'"'>(next + 2, end) : FindNear<'\''>(next + 2, end);
    if (at == end) return nullptr;
    ++at;
  }
}

// Whether a comment ends at `at`: ">" behind "--", whose dashes may be those of the start
// ("<!-->"), or behind "--!", whose dashes may not.
bool EndsComment(const char* body, const char* at) {
  if (*at != '>') return false;
  if (at[-1] == '-') return at[-2] == '-';
  return at[-1] == '!' && at >= body + 3 && at[-2] == '-' && at[-3] == '-';
}

// The places of "<", ">" and quotes, in order. They are found 64 bytes at a time, so that going
// from one to the next does not wait for a search.
class Structure {
 public:
  Structure(const char* at, const char* end) : end_(end) { GoOn(at); }

  // The next place; `end` when there is none.
  [[gnu::always_inline]] const char* Next() {
    while (__builtin_expect(places_ == 0, 0)) {
      if (end_ - block_ <= kBlock) return end_;
      block_ += kBlock;
      places_ = PlacesIn(block_, end_);
    }
    const char* const at = block_ + std::countr_zero(places_);
    places_ &= places_ - 1;
    return at;
  }

  // The next place at or behind `at`, which is not before the last one.
  void GoOn(const char* at) {
    if (block_ == nullptr || at - block_ >= kBlock) {
      block_ = at;
      places_ = at < end_ ? PlacesIn(at, end_) : 0;
    } else {
      places_ &= ~std::uint64_t{0} << static_cast<unsigned>(at - block_);
    }
  }

  const char* End() const { return end_; }

 private:
  static constexpr std::ptrdiff_t kBlock = 64;

  // Not inlined: Next() is, many times over, and has to stay small.
  [[gnu::noinline]] static std::uint64_t PlacesIn(const char* at, const char* end) {
    if (end - at >= kBlock) return PlacesInBlock(at);
    std::array<char, kBlock> rest{};
    std::memcpy(rest.data(), at, static_cast<std::size_t>(end - at));
    return PlacesInBlock(rest.data());
  }

  static std::uint64_t PlacesInBlock(const char* at) {
    std::uint64_t places = 0;
#if defined(__SSE2__)
    for (unsigned part = 0; part < kBlock; part += 16) {
      const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at + part));
      const auto are = [&](char c) { return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(c)); };
      // "<" and ">" differ in one bit alone.
      static_assert(('<' | 2) == '>');
      const __m128i angles =
          _mm_cmpeq_epi8(_mm_or_si128(bytes, _mm_set1_epi8(2)), _mm_set1_epi8('>'));
      const __m128i found = _mm_or_si128(angles, _mm_or_si128(are('"'), are('\'')));
      places |= std::uint64_t{static_cast<unsigned>(_mm_movemask_epi8(found))} << part;
    }
#else
    for (unsigned i = 0; i < kBlock; ++i) places |= std::uint64_t{Is(at[i], kStructure)} << i;
#endif
    return places;
  }

  const char* const end_;
  const char* block_ = nullptr;
  std::uint64_t places_ = 0;  // in the block, those not handed out yet
};

// Whether the first "=" from `at` on is the one at `place`. May answer no when they are far apart.
[[gnu::always_inline]] inline bool FirstEqualsIs(const char* place, const char* at,
                                                 const char* end) {
#if defined(__SSE2__)
  const std::ptrdiff_t distance = place - at;
  if (distance >= 16 || end - at < 16) return false;
  const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
  const int equals = _mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('=')));
  return std::countr_zero(static_cast<unsigned>(equals)) == distance;
#else
  return at <= place && FindNear<'='>(at, end) == place;
#endif
}

// From the start of a tag's name behind its ">", or to the end of the text.
[[gnu::always_inline]] inline const char* SkipTag(const char* name, Structure& structure) {
  const char* const end = structure.End();
  const char* place = structure.Next();
  if (place == end) return end;
  if (*place == '>') return place + 1;
  const char* at = TagNameEnd(name, end);  // behind the last attribute
  while (place < at) place = structure.Next();
  for (;; place = structure.Next()) {
    if (place == end) return end;
    if (*place == '>') return place + 1;
    if (*place == '<') continue;
    // As most attributes are written: a name that ends at "=", a value in quotes.
    if (!FirstEqualsIs(place - 1, at, end) || !IsNameCharacter(place[-2])) break;
    const char quote = *place;
    do place = structure.Next();
    while (place != end && *place != quote);
    if (place == end) return end;
    at = place + 1;
  }
  // Anything else, attribute by attribute.
  const char* behind = SkipAttributes(at, end);
  if (behind == nullptr) behind = end;
  structure.GoOn(behind);
  return behind;
}

// Behind the comment whose "<!--" is at `at`.
[[gnu::always_inline]] inline void SkipComment(const char* at, Structure& structure) {
  const char* const body = at + kCommentStart.size();
  const char* place = structure.Next();
  while (place != structure.End() && !EndsComment(body, place)) place = structure.Next();
}

// The elements whose text holds no markup, but for `plaintext`, which nothing ends.
constexpr std::string_view kRawText[] = {"script",   "style",   "title",  "textarea",
                                         "noframes", "noembed", "iframe", "xmp"};
constexpr std::string_view kPlainText = "plaintext";

// Whether a tag's name begins as that of an element which changes how its content is read.
bool MayChangeReading(const char* name) {
  const char second = static_cast<char>(name[1] | 0x20);
  switch (name[0] | 0x20) {
    case 's':  // script, style, svg
      return second == 'c' || second == 't' || second == 'v';
    case 't':  // textarea, title
      return second == 'e' || second == 'i';
    case 'n':  // noembed, noframes
      return second == 'o';
    case 'i':
      return second == 'f';
    case 'm':  // math
      return second == 'a';
    case 'p':
      return second == 'l';
    case 'x':
      return second == 'm';
    default:
      return false;
  }
}

// The first place in [at, end) where the two characters stand, in any case; may be wrong about
// characters that are no letters. `end` when there is none. A byte follows `end`.
const char* FindPair(const char* at, const char* end, char first, char second) {
#if defined(__SSE2__)
  const __m128i bit = _mm_set1_epi8(0x20);
  for (; end - at >= 16; at += 16) {
    const auto bytesAt = [&](const char* where) {
      return _mm_or_si128(_mm_loadu_si128(reinterpret_cast<const __m128i*>(where)), bit);
    };
    const __m128i found = _mm_and_si128(_mm_cmpeq_epi8(bytesAt(at), _mm_set1_epi8(first)),
                                        _mm_cmpeq_epi8(bytesAt(at + 1), _mm_set1_epi8(second)));
    if (const int mask = _mm_movemask_epi8(found); mask != 0)
      return at + std::countr_zero(static_cast<unsigned>(mask));
  }
#endif
  while (at < end && ((*at | 0x20) != first || (at[1] | 0x20) != second)) ++at;
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
      if (at >= end) {
        attribute.value = {value, static_cast<std::size_t>(end - value)};
        return cutOff();
      }
      ++at;
    }
    attribute.value = {value, static_cast<std::size_t>(at - value)};
    attribute.special = (seen & kSpecial) != 0;
    stopAt(at + 1);
    return true;
  }
  const char* const value = at;
  at = RunEnd(at, end, kUnquotedEnd);
  attribute.value = {value, static_cast<std::size_t>(at - value)};
  attribute.special = true;
  if (at >= end) return cutOff();
  stopAt(at);
  return true;
}

void TagReader::Skip() {
  const char* const behind = SkipAttributes(text_.data() + at_, text_.data() + text_.size());
  cutOff_ = behind == nullptr;
  at_ = cutOff_ ? text_.size() : static_cast<std::size_t>(behind - text_.data());
}

bool IsTagAt(std::string_view text, std::size_t at, std::string_view start, std::string_view name) {
  const std::size_t behind = at + start.size() + name.size();
  return behind < text.size() && text.compare(at, start.size(), start) == 0 &&
         HasNameAt(text.data() + at + start.size(), name) && Is(text[behind], kTagNameEnd);
}

std::size_t FindStartTag(std::string_view text, std::size_t from, std::size_t to,
                         std::string_view name) {
  const char* const end = text.data() + std::min(to, text.size());
  for (const char* at = text.data() + from;
       at < end && (at = FindPair(at, end, '<', name[0])) != end; ++at) {
    const auto place = static_cast<std::size_t>(at - text.data());
    if (IsTagAt(text, place, "<", name)) return place;
  }
  return npos;
}

std::size_t FindIgnoringCase(std::string_view text, std::size_t from, std::size_t to,
                             std::string_view wanted) {
  const char* const end = text.data() + std::min(to, text.size());
  for (const char* at = text.data() + from;
       at < end && (at = FindPair(at, end, wanted[0], wanted[1])) != end; ++at) {
    if (static_cast<std::size_t>(end - at) >= wanted.size() &&
        EqualIgnoringCase({at, wanted.size()}, wanted))
      return static_cast<std::size_t>(at - text.data());
  }
  return npos;
}

std::size_t EndOfPlainText(std::string_view text, std::size_t at) {
  while (!Is(text.data()[at], kQuotedStop | kSpecial)) ++at;
  return at;
}

std::size_t EndOfComment(std::string_view text, std::size_t at) {
  const char* const end = text.data() + text.size();
  const char* const body = text.data() + at + kCommentStart.size();
  for (const char* close = body; (close = FindNear<'>'>(close, end)) != end; ++close) {
    if (EndsComment(body, close)) return static_cast<std::size_t>(close + 1 - text.data());
  }
  return npos;
}

Scanner::Kind Scanner::Next() {
  const char* const begin = text_.data();
  const char* const end = begin + text_.size();
  Structure structure(begin + at_, end);
  for (;;) {
    const char* at = structure.Next();
    while (at != end && *at != '<') at = structure.Next();
    at_ = static_cast<std::size_t>(at - begin);
    if (at == end) return Kind::end;
    const char* behind = nullptr;
    if (IsLetter(at[1])) {
      if (HasNameAt(at + 1, "object") && Is(at[7], kTagNameEnd)) return Kind::object;
      behind = SkipTag(at + 1, structure);
      if (MayChangeReading(at + 1)) {
        at_ = static_cast<std::size_t>(behind - begin);
        LeaveStartTag(at + 1);
        structure.GoOn(begin + at_);
      }
    } else if (at[1] == '/' && IsLetter(at[2])) {
      SkipTag(at + 2, structure);
      if (HasCData()) LeaveEndTag(at + 2);
    } else if (at[1] == '/' || at[1] == '!' || at[1] == '?') {
      if (at[1] == '!' && at[2] == '-' && at[3] == '-') {
        if (at[4] == 'K') {
          if (text_.compare(at_, kSpanStart.size(), kSpanStart) == 0) return Kind::spanStart;
          if (text_.compare(at_, kSpanEnd.size(), kSpanEnd) == 0) return Kind::spanEnd;
        }
        SkipComment(at, structure);
      } else {
        SkipMarkup();
        structure.GoOn(begin + at_);
      }
    }
  }
}

void Scanner::SkipOne() {
  const char* const begin = text_.data();
  const char* const end = begin + text_.size();
  const char* const at = begin + at_;
  rawText_ = {};
  if (at == end) return;
  const bool isEndTag = at[1] == '/' && IsLetter(at[2]);
  if (IsLetter(at[1]) || isEndTag) {
    Structure structure(at + 1, end);
    const char* const name = at + (isEndTag ? 2 : 1);
    at_ = static_cast<std::size_t>(SkipTag(name, structure) - begin);
    if (isEndTag)
      LeaveEndTag(name);
    else if (MayChangeReading(name))
      LeaveStartTag(name);
  } else if (at[1] == '/' || at[1] == '!' || at[1] == '?') {
    SkipMarkup();
  } else {
    ++at_;
  }
}

void Scanner::SkipMarkup() {
  if (text_.compare(at_, kCommentStart.size(), kCommentStart) == 0) {
    at_ = std::min(EndOfComment(text_, at_), text_.size());
    return;
  }
  // A section goes on as far as its end, or to the end of the page. A document type, and what
  // browsers take for a comment ("<?", "</" without a letter, "<!"), ends at the next ">".
  const bool isSection = HasCData() && text_.substr(at_, kCDataStart.size()) == kCDataStart;
  const std::string_view close = isSection ? "]]>" : ">";
  const std::size_t end = text_.find(close, at_ + (isSection ? kCDataStart.size() : 2));
  at_ = end == npos ? text_.size() : end + close.size();
}

bool Scanner::IsEndTagOf(std::size_t at, std::string_view name) const {
  return IsTagAt(text_, at, "</", name);
}

void Scanner::LeaveStartTag(const char* name) {
  const auto length =
      static_cast<std::size_t>(TagNameEnd(name, text_.data() + text_.size()) - name);
  const bool closesItself = text_[at_ - 1] == '>' && text_[at_ - 2] == '/';
  if (std::size_t* const depth = DepthOf(name, length)) {
    if (!closesItself) ++*depth;
    return;
  }
  // In HTML the slash of "<title/>" means nothing.
  if (closesItself && HasCData()) return;
  const auto isNamed = [&](std::string_view wanted) {
    return length == wanted.size() && HasNameAt(name, wanted);
  };
  if (isNamed(kPlainText)) {
    rawText_ = kPlainText;
    at_ = text_.size();
  }
  const auto* const raw = std::ranges::find_if(kRawText, isNamed);
  if (raw == std::end(kRawText)) return;
  rawText_ = *raw;
  if (raw == std::begin(kRawText))
    SkipScript();
  else
    SkipRawTextOf(*raw);
}

void Scanner::LeaveEndTag(const char* name) {
  const auto length =
      static_cast<std::size_t>(TagNameEnd(name, text_.data() + text_.size()) - name);
  if (std::size_t* const depth = DepthOf(name, length); depth != nullptr && *depth != 0) --*depth;
}

std::size_t* Scanner::DepthOf(const char* name, std::size_t length) {
  if (length == 3 && HasNameAt(name, "svg")) return &svg_;
  if (length == 4 && HasNameAt(name, "math")) return &math_;
  return nullptr;
}

void Scanner::SkipRawTextOf(std::string_view name) {
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
