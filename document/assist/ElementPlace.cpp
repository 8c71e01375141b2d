#include "document/assist/ElementPlace.h"

#include <algorithm>

#include "common/values/Ascii.h"
#include "document/page/Scanner.h"
#include "host/registration/classes.h"

namespace kvo::assist {
namespace {

using page::IsHtmlSpace;
using page::IsTagAt;
using page::npos;
using Part = ElementPlace::Part;

constexpr std::string_view kObject = "<object";
constexpr std::string_view kParam = "<param";

// Reads a tag up to a place, which may be inside it.
class OpenTag {
 public:
  // `at` is behind the tag's name.
  OpenTag(std::string_view text, std::size_t at, std::size_t place)
      : text_(text), at_(at), place_(std::min(place, text.size())) {}

  struct Attribute {
    std::string_view name;
    std::string_view value;
    std::size_t begin = 0;  // of the value
    char quote = '\0';
  };
  // Reads the next attribute in front of the place; false at the place or the tag's end.
  bool Next(Attribute& attribute);

  // Where the place is, if the tag does not end in front of it.
  bool IsInside() const { return inside_; }
  Part PartAtPlace() const { return part_; }
  std::size_t Begin() const { return begin_; }  // of the name or value there
  const Attribute& Open() const { return open_; }
  std::size_t End() const { return at_; }  // of the tag

 private:
  bool Stop(Part part, std::size_t begin) {
    inside_ = true;
    part_ = part;
    begin_ = begin;
    return false;
  }
  void SkipSpace() {
    while (at_ < place_ && IsHtmlSpace(text_[at_])) ++at_;
  }

  std::string_view text_;
  std::size_t at_;
  std::size_t place_;
  bool inside_ = false;
  Part part_ = Part::attribute;
  std::size_t begin_ = 0;
  Attribute open_;
};

bool OpenTag::Next(Attribute& attribute) {
  while (at_ < place_ && (IsHtmlSpace(text_[at_]) || text_[at_] == '/')) ++at_;
  if (at_ >= place_) return Stop(Part::attribute, place_);
  if (text_[at_] == '>') {
    ++at_;
    return false;
  }
  const std::size_t name = at_;
  const auto endsName = [&](char c) {
    return IsHtmlSpace(c) || c == '/' || c == '>' || (c == '=' && at_ > name);
  };
  while (at_ < place_ && !endsName(text_[at_])) ++at_;
  if (at_ >= place_) return Stop(Part::attribute, name);
  attribute = {text_.substr(name, at_ - name), {}, 0, '\0'};
  SkipSpace();
  if (at_ >= place_) return Stop(Part::attribute, place_);
  if (text_[at_] != '=') return true;
  ++at_;
  SkipSpace();
  if (at_ < place_ && (text_[at_] == '"' || text_[at_] == '\'')) attribute.quote = text_[at_++];
  attribute.begin = at_;
  const auto endsValue = [&](char c) {
    return attribute.quote != '\0' ? c == attribute.quote : IsHtmlSpace(c) || c == '>';
  };
  while (at_ < place_ && !endsValue(text_[at_])) ++at_;
  attribute.value = text_.substr(attribute.begin, at_ - attribute.begin);
  if (at_ >= place_) {
    open_ = attribute;
    return Stop(Part::value, attribute.begin);
  }
  if (attribute.quote != '\0') ++at_;
  return true;
}

std::string Decoded(const page::Page& page, std::string_view value) {
  std::string text;
  page.Encoding().DecodeAttribute(value, text);
  return text;
}

// Returns the start of the object element that the place may be in; npos when the last tag of an
// object before the place closes one.
std::size_t ObjectBefore(std::string_view text, std::size_t place) {
  for (std::size_t at = place; at > 0;) {
    at = text.rfind('<', at - 1);
    if (at == npos) return npos;
    if (IsTagAt(text, at, "<", "object") && at + kObject.size() < place) return at;
    if (IsTagAt(text, at, "</", "object") && at + kObject.size() + 1 < place) return npos;
  }
  return npos;
}

// Whether the text between `at` and the place is the beginning of a param's tag.
bool BeginsParam(std::string_view text, std::size_t at, std::size_t place) {
  const std::string_view typed = text.substr(at, place - at);
  return !typed.empty() && typed.size() <= kParam.size() &&
         EqualIgnoringCase(typed, kParam.substr(0, typed.size()));
}

// Returns the name in a whole param, whose tag's name ends at `at`; empty when there is none.
std::string KeyIn(const page::Page& page, std::size_t at) {
  page::TagReader tag(page.Bytes(), at);
  page::RawAttribute attribute;
  while (tag.Next(attribute))
    if (EqualIgnoringCase(attribute.name, "name")) return Decoded(page, attribute.value);
  return {};
}

// Adds the keys of the params behind the place.
void AddKeysBehind(const page::Page& page, std::size_t place, std::vector<std::string>& keys) {
  const std::string_view text = page.Bytes();
  for (std::size_t at = text.find('<', place); at != npos; at = text.find('<', at + 1)) {
    if (IsTagAt(text, at, "</", "object") || IsTagAt(text, at, "<", "object")) return;
    if (!IsTagAt(text, at, "<", "param")) continue;
    if (std::string key = KeyIn(page, at + kParam.size()); !key.empty())
      keys.push_back(std::move(key));
  }
}

void Set(ElementPlace& found, const OpenTag& tag) {
  found.part = tag.PartAtPlace();
  found.begin = tag.Begin();
  found.attribute = tag.Open().name;
  found.quote = tag.Open().quote;
}

}  // namespace

std::optional<ElementPlace> ElementPlaceAt(const page::Page& page, std::size_t place) {
  const std::string_view text = page.Bytes();
  place = std::min(place, text.size());
  const std::size_t object = ObjectBefore(text, place);
  if (object == npos) return std::nullopt;
  ElementPlace found;
  OpenTag start(text, object + kObject.size(), place);
  OpenTag::Attribute attribute;
  while (start.Next(attribute)) {
    if (!EqualIgnoringCase(attribute.name, "classid") || found.contract != nullptr) continue;
    if (const RegisteredControl* control = FindControlByClassId(Decoded(page, attribute.value)))
      found.contract = &control->contract();
  }
  if (start.IsInside()) {
    Set(found, start);
    return found;
  }
  for (std::size_t at = start.End();;) {
    while (at < place && IsHtmlSpace(text[at])) ++at;
    if (at >= place || BeginsParam(text, at, place)) {
      found.begin = std::min(at, place);
      break;
    }
    if (text.substr(at).starts_with(page::kCommentEnd)) return std::nullopt;
    if (!IsTagAt(text, at, "<", "param")) {
      at = std::min(text.find('<', at + 1), place);
      continue;
    }
    OpenTag param(text, at + kParam.size(), place);
    std::string key;
    while (param.Next(attribute))
      if (key.empty() && EqualIgnoringCase(attribute.name, "name"))
        key = Decoded(page, attribute.value);
    if (param.IsInside()) {
      Set(found, param);
      found.inParam = true;
      const bool isName = found.part == Part::value && EqualIgnoringCase(found.attribute, "name");
      if (!isName) found.key = key.empty() ? KeyIn(page, at + kParam.size()) : key;
      break;
    }
    if (!key.empty()) found.otherKeys.push_back(std::move(key));
    at = param.End();
  }
  AddKeysBehind(page, place, found.otherKeys);
  return found;
}

std::optional<ValuePlace> OpenValueOf(std::string_view text, std::string_view name) {
  const std::size_t at = text.rfind('<');
  if (at == npos || !IsTagAt(text, at, "<", name)) return std::nullopt;
  OpenTag tag(text, at + 1 + name.size(), text.size());
  OpenTag::Attribute attribute;
  while (tag.Next(attribute)) {
  }
  if (!tag.IsInside() || tag.PartAtPlace() != Part::value) return std::nullopt;
  return ValuePlace{tag.Open().name, tag.Begin()};
}

}  // namespace kvo::assist
