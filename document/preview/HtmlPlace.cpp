#include "document/preview/HtmlPlace.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "common/values/Ascii.h"
#include "document/page/Scanner.h"
#include "document/page/Utf8.h"

namespace kvo::preview {
namespace {

using page::IsHtmlSpace;

// Elements whose content holds no tags.
constexpr std::string_view kRawElements[] = {"script",   "style",  "title", "textarea",
                                             "noframes", "iframe", "xmp"};
constexpr bool IsReadAsText(std::string_view element) {
  return element == "title" || element == "textarea";
}

constexpr std::string_view kAddresses[] = {"href", "action", "formaction", "cite", "longdesc"};
constexpr std::string_view kSources[] = {"src",    "background", "data",      "poster",
                                         "srcset", "lowsrc",     "xlink:href"};
// `content` of a meta refresh holds an address.
constexpr std::string_view kCodes[] = {"style", "srcdoc", "content"};

template <class Names>
bool IsOneOf(std::string_view name, const Names& names) {
  return std::ranges::find(names, name) != std::end(names);
}

// Addresses that run, or hold, what follows in them.
bool BeginsScript(std::string_view address) {
  while (!address.empty() && static_cast<unsigned char>(address[0]) <= ' ')
    address.remove_prefix(1);
  return address.starts_with("javascript:") || address.starts_with("vbscript:") ||
         address.starts_with("data:");
}

HtmlPlace PlaceOfValue(std::string_view attribute, std::string_view value) {
  if (attribute.starts_with("on") || IsOneOf(attribute, kCodes)) return HtmlPlace::code;
  const bool isSource = IsOneOf(attribute, kSources);
  if (!isSource && !IsOneOf(attribute, kAddresses)) return HtmlPlace::value;
  if (BeginsScript(value)) return HtmlPlace::code;
  return isSource ? HtmlPlace::source : HtmlPlace::address;
}

// No character of these means anything in HTML, CSS or a script but itself.
bool IsPlain(std::string_view text) {
  return std::ranges::all_of(text, [](char c) {
    return IsLetter(c) || IsDigit(c) || std::string_view(" .,-_%").find(c) != page::npos;
  });
}
bool IsColor(std::string_view text) {
  return text.starts_with('#') && (text.size() == 4 || text.size() == 7) &&
         std::ranges::all_of(text.substr(1), IsHexDigit);
}

// The colon of a scheme stands before all of these.
bool HasUsualScheme(std::string_view address) {
  const std::size_t end = address.find_first_of(":/?#");
  if (end == page::npos || address[end] != ':') return true;  // relative
  const std::string_view scheme = address.substr(0, end);
  return std::ranges::any_of(
      std::array<std::string_view, 4>{"http", "https", "mailto", "tel"},
      [&](std::string_view usual) { return EqualIgnoringCase(scheme, usual); });
}
bool IsInPagesFolder(std::string_view address) {
  return address.find(':') == page::npos && address.find("//") == page::npos &&
         address.find('\\') == page::npos;
}

bool IsHarmlessAttribute(std::string_view name) {
  return PlaceOfValue(Lowered(name), {}) == HtmlPlace::value;
}

bool CanStandAt(HtmlPlace place, std::string_view text) {
  switch (place) {
    case HtmlPlace::address:
      return HasUsualScheme(text);
    case HtmlPlace::source:
      return IsInPagesFolder(text);
    case HtmlPlace::code:
      return IsPlain(text) || IsColor(text);
    case HtmlPlace::tag:
      return IsPlain(text) && text.find(' ') == page::npos && IsHarmlessAttribute(text);
    case HtmlPlace::bare:
      return IsPlain(text) && text.find(' ') == page::npos;
    case HtmlPlace::name:
      return false;
    default:
      return true;
  }
}

constexpr std::string_view ReferenceTo(char32_t character) {
  switch (character) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    case '\'':
      return "&#39;";
    default:
      return {};
  }
}

}  // namespace

void HtmlReader::Read(std::string_view piece) {
  for (std::size_t at = 0; at < piece.size(); ++at) {
    if (state_ == State::text) {
      const std::size_t next = std::min(piece.find('<', at), piece.size());
      read_ += next - at;
      at = next;
      if (at == piece.size()) return;
    }
    ++read_;
    ReadCharacter(piece[at]);
  }
}

void HtmlReader::ReadCharacter(char c) {
  const auto keepTail = [&](std::size_t most) {
    tail_ += LowerAscii(c);
    if (tail_.size() > 2 * most) tail_.erase(0, tail_.size() - most);
  };
  switch (state_) {
    case State::text:
      if (c == '<') state_ = State::opened;
      return;
    case State::opened:
      tag_.clear();
      if (c == '!') {
        tail_.clear();
        state_ = State::declaration;
      } else if (c == '?') {
        state_ = State::bogus;
      } else if (c == '/' || IsLetter(c)) {
        tag_ += LowerAscii(c);
        state_ = State::name;
      } else if (c != '<') {
        state_ = State::text;
      }
      return;
    case State::declaration:
      tail_ += c;
      if (tail_ == "--") {
        tail_.clear();
        state_ = State::comment;
      } else if (c == '>') {
        state_ = State::text;
      } else if (tail_ != "-") {
        state_ = State::bogus;
      }
      return;
    case State::comment:
      keepTail(3);
      if (c == '>' &&
          (tail_.ends_with("-->") || tail_ == ">" || tail_ == "->" || tail_.ends_with("--!>")))
        state_ = State::text;
      return;
    case State::bogus:
      if (c == '>') state_ = State::text;
      return;
    case State::name:
      if (c == '>')
        EndTag();
      else if (tag_ == "/" && !IsLetter(c))
        state_ = State::bogus;
      else if (IsHtmlSpace(c) || c == '/')
        state_ = State::tag;
      else if (tag_.size() < 20)
        tag_ += LowerAscii(c);
      return;
    case State::tag:
      if (c == '>') {
        EndTag();
      } else if (!IsHtmlSpace(c) && c != '/') {
        attribute_.assign(1, LowerAscii(c));
        state_ = State::attribute;
      }
      return;
    case State::attribute:
      if (c == '>')
        EndTag();
      else if (c == '=')
        state_ = State::equals;
      else if (c == '/')
        state_ = State::tag;
      else if (IsHtmlSpace(c))
        attribute_ += ' ';  // an "=" may follow
      else if (attribute_.ends_with(' '))
        attribute_.assign(1, LowerAscii(c));
      else if (attribute_.size() < 40)
        attribute_ += LowerAscii(c);
      return;
    case State::equals:
      while (attribute_.ends_with(' ')) attribute_.pop_back();
      if (c == '"' || c == '\'') {
        quote_ = c;
        value_.clear();
        state_ = State::quoted;
      } else if (c == '>') {
        EndTag();
      } else if (!IsHtmlSpace(c)) {
        state_ = State::bare;
      }
      return;
    case State::quoted:
      if (c == quote_)
        state_ = State::tag;
      else if (value_.size() < 30)
        value_ += LowerAscii(c);
      return;
    case State::bare:
      if (c == '>')
        EndTag();
      else if (IsHtmlSpace(c))
        state_ = State::tag;
      return;
    case State::raw:
      keepTail(raw_.size() + 3);
      if ((IsHtmlSpace(c) || c == '/' || c == '>') && tail_.ends_with("</" + raw_ + c)) {
        tag_ = "/" + raw_;
        state_ = State::tag;
        if (c == '>') EndTag();
      }
      return;
  }
}

void HtmlReader::EndTag() {
  state_ = State::text;
  if (tag_ == "body" && bodyAt_ == 0) bodyAt_ = read_;
  if (!IsOneOf(tag_, kRawElements)) return;
  raw_ = tag_;
  tail_.clear();
  state_ = State::raw;
}

HtmlPlace HtmlReader::Place() const {
  switch (state_) {
    case State::text:
      return HtmlPlace::text;
    case State::comment:
    case State::bogus:
      return HtmlPlace::comment;
    case State::raw:
      return IsReadAsText(raw_) ? HtmlPlace::text : HtmlPlace::code;
    case State::equals:
    case State::bare:
      return HtmlPlace::bare;
    case State::quoted:
      return PlaceOfValue(attribute_, value_);
    case State::opened:
    case State::declaration:
    case State::name:
      return HtmlPlace::name;
    case State::attribute:
      return attribute_.ends_with(' ') ? HtmlPlace::tag : HtmlPlace::name;
    case State::tag:
      return HtmlPlace::tag;
  }
  return HtmlPlace::text;
}

bool AppendTextAt(HtmlPlace place, std::string_view text, const page::PageEncoding& encoding,
                  std::string& page) {
  if (!CanStandAt(place, text)) return false;
  if (place != HtmlPlace::comment) {
    AppendEscaped(text, encoding, page);
    return true;
  }
  // A comment could end where dashes meet a ">" of the page.
  for (std::size_t dash = text.find('-'); dash != page::npos; dash = text.find('-')) {
    AppendEscaped(text.substr(0, dash), encoding, page);
    page += "&#45;";
    text.remove_prefix(dash + 1);
  }
  AppendEscaped(text, encoding, page);
  return true;
}

void AppendEscaped(std::string_view text, const page::PageEncoding& encoding, std::string& page) {
  while (!text.empty()) {
    const auto plain = static_cast<std::size_t>(
        std::ranges::find_if_not(text,
                                 [](char c) {
                                   return static_cast<unsigned char>(c) < 0x7F &&
                                          (c >= ' ' || IsHtmlSpace(c)) &&
                                          std::string_view("&<>\"'").find(c) == page::npos;
                                 }) -
        text.begin());
    page += text.substr(0, plain);
    text.remove_prefix(plain);
    if (text.empty()) return;
    auto [character, length] = page::FirstUtf8Character(text);
    // Controls mean nothing, and 0x80 to 0x9F would be read as other characters.
    if (length == 0 || character < ' ' || (character >= 0x7F && character < 0xA0))
      character = page::kReplacementCharacter;
    if (const std::string_view name = ReferenceTo(character); !name.empty())
      page += name;
    else if (!encoding.Encode(character, page))
      page += "&#" + std::to_string(static_cast<std::uint32_t>(character)) + ";";
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
}

}  // namespace kvo::preview
