#include "document/page/Scanner.h"

#include <algorithm>
#include <cstring>

#include "common/text/Blocks.h"
#include "common/values/Ascii.h"

namespace kvo::page {
namespace {

// The elements whose text holds no markup. The text of `plaintext` never ends.
constexpr std::string_view kScript = "script";
constexpr std::string_view kPlainText = "plaintext";
constexpr std::string_view kRawText[] = {kScript,   "style",  "title", "textarea", "noframes",
                                         "noembed", "iframe", "xmp",   kPlainText};

// A template, so that the compiler inlines the comparison.
template <std::size_t size>
bool StandsAt(std::string_view text, std::size_t at, const char (&wanted)[size]) {
  return text.size() - at >= size - 1 && std::memcmp(text.data() + at, wanted, size - 1) == 0;
}

// Finds the end of a tag or attribute name, or of an unquoted value.
template <char... others>
const char* FindEnd(const char* at, const char* end) {
  return FindAny<'>', ' ', '\t', '\n', '\r', '\f', others...>(at, end);
}

const char* SkipSpace(const char* at, const char* end) {
  while (at != end && IsHtmlSpace(*at)) ++at;
  return at;
}

// Returns the offset after the first match from `at` on, or the text's end.
std::size_t FindBehind(std::string_view text, std::string_view wanted, std::size_t at) {
  const std::size_t found = text.find(wanted, at);
  return found == npos ? text.size() : found + wanted.size();
}

// Whether a comment ends at `at`: with "-->", whose dashes may be those of the start ("<!-->"), or
// with "--!>", whose dashes may not.
bool EndsComment(const char* body, const char* at) {
  if (at < body || *at != '>') return false;
  if (at[-1] == '-') return at[-2] == '-';
  return at[-1] == '!' && at >= body + 3 && at[-2] == '-' && at[-3] == '-';
}

// Returns the place after the ">" of the tag whose name begins at `name`, or the text's end.
const char* SkipTag(const char* name, const char* end, TagPlaces& places) {
  const char* from = nullptr;  // after the name, later after the last value
  for (const char* at = places.Next(); at != end; at = places.Next()) {
    if (*at == '>') return at + 1;
    if (*at != '=') continue;
    if (from == nullptr) from = FindEnd<'/'>(name, end);
    const char* before = at;
    while (before > from && IsHtmlSpace(before[-1])) --before;
    if (before <= from || before[-1] == '/') continue;  // the first character of a name
    const char* const value = SkipSpace(at + 1, end);
    if (value == end) return end;
    if (*value == '"' || *value == '\'') {
      do at = places.Next();
      while (at != end && (*at != *value || at == value));
      if (at == end) return end;
      from = at + 1;
    } else {
      from = FindEnd(value, end);
      places.SeekTo(from);
    }
  }
  return end;
}

std::string_view Between(const char* begin, const char* end) {
  return {begin, static_cast<std::size_t>(end - begin)};
}

}  // namespace

bool TagReader::Next(RawAttribute& attribute) {
  const char* const begin = text_.data();
  const char* const end = begin + text_.size();
  const char* at = begin + at_;
  const auto goTo = [&](const char* place) { at_ = static_cast<std::size_t>(place - begin); };
  const auto cutOff = [&] {
    cutOff_ = true;
    goTo(end);
    return false;
  };
  while (at != end && (IsHtmlSpace(*at) || *at == '/')) ++at;
  if (at == end) return cutOff();
  if (*at == '>') {
    goTo(at + 1);
    return false;
  }
  // The first character of a name may be anything, "=" included.
  const char* const name = at;
  at = FindEnd<'/', '='>(at + 1, end);
  attribute = {Between(name, at), {}, false};
  at = SkipSpace(at, end);
  if (at == end) return cutOff();
  goTo(at);
  if (*at != '=') return true;
  at = SkipSpace(at + 1, end);
  if (at == end) return cutOff();
  attribute.hasValue = *at != '>';
  const char quote = *at;
  const bool isQuoted = quote == '"' || quote == '\'';
  if (isQuoted) ++at;
  const char* const value = at;
  at = isQuoted ? std::find(at, end, quote) : FindEnd(at, end);
  attribute.value = Between(value, at);
  if (at == end) return cutOff();
  goTo(isQuoted ? at + 1 : at);
  return true;
}

void TagReader::Skip() {
  RawAttribute attribute;
  while (Next(attribute)) {
  }
}

std::size_t EndOfTagName(std::string_view text, std::size_t name) {
  const char* const end = text.data() + text.size();
  return static_cast<std::size_t>(FindEnd<'/'>(text.data() + name, end) - text.data());
}

bool IsTagAt(std::string_view text, std::size_t at, std::string_view start, std::string_view name) {
  const std::size_t begin = at + start.size();
  const std::size_t end = begin + name.size();
  if (end >= text.size() || LowerAscii(text[begin]) != name[0]) return false;
  const char behind = text[end];
  return (IsHtmlSpace(behind) || behind == '/' || behind == '>') &&
         std::equal(start.begin(), start.end(), text.begin() + at) &&
         EqualIgnoringCase(text.substr(begin, name.size()), name);
}

std::size_t FindObject(std::string_view text, std::size_t from, std::size_t to) {
  // Searches for its rarest letter.
  constexpr std::size_t kRare = std::string_view("<ob").size();
  const char* const begin = text.data();
  const char* const end = begin + std::min(text.size(), to + kRare);
  for (const char* at = begin + from; (at = FindAny<'j', 'J'>(at, end)) != end; ++at) {
    const auto place = static_cast<std::size_t>(at - begin);
    if (place >= from + kRare && IsTagAt(text, place - kRare, "<", "object")) return place - kRare;
  }
  return npos;
}

std::size_t EndOfComment(std::string_view text, std::size_t at) {
  const char* const body = text.data() + at + kCommentStart.size();
  const char* const end = text.data() + text.size();
  for (const char* close = body; (close = FindAny<'>'>(close, end)) != end; ++close)
    if (EndsComment(body, close)) return static_cast<std::size_t>(close + 1 - text.data());
  return npos;
}

Scanner::Kind Scanner::Next() {
  const char* const begin = text_.data();
  const char* const end = begin + text_.size();
  TagPlaces places(begin + at_, end);
  for (;;) {
    const char* at = places.Next();
    while (at != end && *at != '<') at = places.Next();
    at_ = static_cast<std::size_t>(at - begin);
    if (at == end) return Kind::end;
    if (end - at > 1 && LowerAscii(at[1]) == 'o' && IsTagAt(text_, at_, "<", "object"))
      return Kind::object;
    if (StandsAt(text_, at_, "<!--KVO")) {
      if (text_.substr(at_).starts_with(kSpanStart)) return Kind::spanStart;
      if (text_.substr(at_).starts_with(kSpanEnd)) return Kind::spanEnd;
    }
    Skip(places);
  }
}

void Scanner::SkipOne() {
  rawText_ = {};
  if (at_ == text_.size()) return;
  TagPlaces places(text_.data() + at_ + 1, text_.data() + text_.size());
  Skip(places);
}

void Scanner::Skip(TagPlaces& places) {
  const char* const begin = text_.data();
  const bool isEndTag = StandsAt(text_, at_, "</");
  const std::size_t name = at_ + (isEndTag ? 2 : 1);
  if (name < text_.size() && IsLetter(text_[name])) {
    at_ = static_cast<std::size_t>(SkipTag(begin + name, begin + text_.size(), places) - begin);
    if (isEndTag && HasCData())
      LeaveEndTag(name);
    else if (!isEndTag && LeaveStartTag(name))
      places.SeekTo(begin + at_);
    return;
  }
  if (StandsAt(text_, at_, "<!--")) {
    const char* const end = begin + text_.size();
    const char* const body = begin + at_ + kCommentStart.size();
    const char* close = places.Next();
    while (close != end && !EndsComment(body, close)) close = places.Next();
    at_ = static_cast<std::size_t>(close - begin) + (close != end);
    return;
  }
  if (HasCData() && text_.substr(at_).starts_with(kCDataStart)) {
    at_ = FindBehind(text_, "]]>", at_ + kCDataStart.size());
  } else if (isEndTag || StandsAt(text_, at_, "<!") || StandsAt(text_, at_, "<?")) {
    // A document type, or what browsers read as a comment.
    at_ = FindBehind(text_, ">", at_ + 2);
  } else {
    ++at_;
  }
  places.SeekTo(begin + at_);
}

bool Scanner::LeaveStartTag(std::size_t at) {
  // Most tag names are shorter than any of these.
  if (at_ - at < 3 || !IsLetter(text_[at + 1]) || !IsLetter(text_[at + 2])) return false;
  const std::string_view name = text_.substr(at, EndOfTagName(text_, at) - at);
  const bool closesItself = text_.substr(0, at_).ends_with("/>");
  if (std::size_t* const depth = DepthOf(name)) {
    if (!closesItself) ++*depth;
    return false;
  }
  // In HTML the slash of "<title/>" means nothing.
  if (closesItself && HasCData()) return false;
  const auto isNamed = [&](std::string_view wanted) { return EqualIgnoringCase(name, wanted); };
  const auto* const raw = std::find_if(std::begin(kRawText), std::end(kRawText), isNamed);
  if (raw == std::end(kRawText)) return false;
  rawText_ = *raw;
  if (rawText_ == kPlainText)
    at_ = text_.size();
  else if (rawText_ == kScript)
    SkipScript();
  else
    SkipRawTextOf(rawText_);
  return true;
}

void Scanner::LeaveEndTag(std::size_t at) {
  const std::string_view name = text_.substr(at, EndOfTagName(text_, at) - at);
  if (std::size_t* const depth = DepthOf(name); depth != nullptr && *depth != 0) --*depth;
}

std::size_t* Scanner::DepthOf(std::string_view name) {
  if (EqualIgnoringCase(name, "svg")) return &svg_;
  if (EqualIgnoringCase(name, "math")) return &math_;
  return nullptr;
}

void Scanner::SkipRawTextOf(std::string_view name) {
  while ((at_ = text_.find("</", at_)) != npos) {
    if (IsTagAt(text_, at_, "</", name)) return;
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
      if (IsTagAt(text_, at_, "</", "script")) return;
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
    } else if (c == '<' && IsTagAt(text_, at_, "</", "script")) {
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
