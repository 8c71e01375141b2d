#include "document/page/OurElements.h"

#include <algorithm>
#include <charconv>
#include <vector>

#include "common/values/Ascii.h"
#include "common/values/RuntimeError.h"
#include "document/page/ControlReader.h"
#include "document/page/Page.h"
#include "host/registration/classes.h"

namespace kvo::page {
namespace {

constexpr std::size_t kMostDigits = 9;

// Finds a text, given in lower case, in [from, to), ignoring case.
std::size_t FindIgnoringCase(std::string_view text, std::size_t from, std::size_t to,
                             std::string_view wanted) {
  const std::string_view part = text.substr(0, to);
  const auto* const found =
      std::search(part.begin() + std::min(from, part.size()), part.end(), wanted.begin(),
                  wanted.end(), [](char c, char lower) { return LowerAscii(c) == lower; });
  return found == part.end() ? npos : static_cast<std::size_t>(found - part.begin());
}

// Finds the end tag of the element at the start of the text; npos when there is none.
std::size_t FindEndTag(std::string_view text) {
  std::size_t at = 0;
  do at = text.find("</", at + 1);
  while (at != npos && !IsTagAt(text, at, "</", "object"));
  return at;
}

// Empty when the control fails.
std::string RuntimeTextOf(const ReadControl& control) {
  std::vector<MemoryBag::Entry> bag;
  for (const auto& [key, value] : control.params) bag.emplace_back(key, value);
  try {
    return Load(*control.contract, std::move(bag))->GetRuntimeText();
  } catch (const RuntimeError&) {
    return {};
  }
}

}  // namespace

std::optional<OurElements::Element> OurElements::Next() {
  while (next_ != npos) {
    const std::size_t begin = next_;
    next_ = FindObject(page_, begin + kObjectStart.size(), to_);
    const Element element = {begin, std::min(next_, to_)};
    if (HasOurClassId(element)) return element;
  }
  return std::nullopt;
}

// Does not parse the tag: its surroundings may cut it off for HTML, but not for other readers.
bool OurElements::HasOurClassId(Element element) const {
  constexpr std::string_view kClassId = "classid";
  const std::size_t end = element.end;
  for (std::size_t at = element.begin + kObjectStart.size();
       (at = FindIgnoringCase(page_, at, end, kClassId)) != npos; ++at) {
    const char before = page_[at - 1];
    if (!IsHtmlSpace(before) && before != '/' && before != '"' && before != '\'') continue;
    std::size_t value = at + kClassId.size();
    while (value < end && IsHtmlSpace(page_[value])) ++value;
    if (value >= end || page_[value] != '=') continue;
    ++value;
    while (value < end && IsHtmlSpace(page_[value])) ++value;
    if (value >= end) continue;
    const char quote = page_[value];
    const bool quoted = quote == '"' || quote == '\'';
    if (quoted) ++value;
    const std::string_view stop =
        quoted ? std::string_view(&quote, 1) : std::string_view(" \t\r\n\f\"'<>");
    const std::string_view raw = page_.substr(value, end - value);
    std::string classId;
    encoding_.DecodeAttribute(raw.substr(0, raw.find_first_of(stop)), classId);
    if (FindControlByClassId(classId) != nullptr || IsOurProgId(classId)) return true;
  }
  return false;
}

std::size_t SpanNumberBefore(std::string_view page, std::size_t element) {
  constexpr std::size_t kMostBefore = kSpanStart.size() + kMostDigits + 2;
  const std::size_t nearby = element - std::min(element, kMostBefore);
  std::string_view rest = page.substr(nearby, element - nearby);
  const std::size_t comment = rest.find(kSpanStart);
  if (comment == npos) return 0;
  rest.remove_prefix(comment + kSpanStart.size());
  return TakeNumber(rest);
}

LoneElement ReadAlone(std::string_view text, const PageEncoding& encoding) {
  LoneElement alone;
  const std::size_t close = FindEndTag(text);
  std::string element(text.substr(0, text.find('>', close == npos ? 0 : close)));
  element += '>';
  ProblemList ignored;
  ControlReader reader(element, encoding, ControlReader::Params::known, ignored);
  if (!reader.Next()) return alone;
  const ReadControl& control = reader.Control();
  alone.className = control.className;
  alone.id = control.id.value_or(std::string_view());
  if (!control.broken) alone.runtimeText = RuntimeTextOf(control);
  return alone;
}

std::size_t TakeNumber(std::string_view& text) {
  if (!text.starts_with(' ') || text.substr(1, 1) == "0") return 0;
  const std::string_view digits = text.substr(1, kMostDigits);
  std::size_t number = 0;
  const char* const end = std::from_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return number;
}

}  // namespace kvo::page
