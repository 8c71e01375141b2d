#include "document/page/Surroundings.h"

#include <algorithm>

#include "common/values/Ascii.h"
#include "document/page/ControlReader.h"
#include "document/page/Messages.h"

namespace kvo::page {
namespace {

using Kind = Surroundings::Kind;

bool IsConditional(std::string_view comment) {
  std::string_view rest = comment.substr(kCommentStart.size());
  while (!rest.empty() && IsHtmlSpace(rest.front())) rest.remove_prefix(1);
  return EqualIgnoringCase(rest.substr(0, 3), "[if");
}

// Whether the text is exactly one tag.
bool IsOneTag(std::string_view text) {
  if (text.size() < 3 || text[0] != '<' || !IsLetter(text[1])) return false;
  TagReader tag(text, EndOfTagName(text, 1));
  tag.Skip();
  return !tag.CutOff() && tag.Position() == text.size();
}

}  // namespace

Surroundings SurroundingsFinder::At(std::size_t position) {
  while (position > end_ || (position == end_ && !openEnd_)) {
    const std::size_t next = text_.find('<', end_);
    if (next >= position) return {};
    scanner_.SeekTo(next);
    NextThing();
  }
  if (position <= thing_.begin) return {};
  return isTag_ ? InTag(position) : thing_;
}

void SurroundingsFinder::NextThing() {
  const std::size_t begin = scanner_.Position();
  const std::string_view rest = text_.substr(begin);
  const bool hasCData = scanner_.HasCData();
  scanner_.SkipOne();
  end_ = scanner_.Position();
  thing_ = {};
  thing_.begin = begin;
  isTag_ = openEnd_ = false;
  const std::string_view all = text_.substr(begin, end_ - begin);
  if (rest.starts_with(kCommentStart)) {
    thing_.kind = IsConditional(all) ? Kind::conditionalComment : Kind::comment;
    openEnd_ = EndOfComment(text_, begin) == npos;
  } else if (hasCData && rest.starts_with(kCDataStart)) {
    thing_.kind = Kind::cdata;
    openEnd_ = !all.substr(kCDataStart.size()).ends_with("]]>");
  } else {
    const bool isEndTag = rest.starts_with("</");
    const std::size_t name = begin + (isEndTag ? 2 : 1);
    if (name < text_.size() && IsLetter(text_[name])) {
      isTag_ = true;
      thing_.kind = Kind::tag;
      const std::size_t nameEnd = EndOfTagName(text_, name);
      thing_.name = text_.substr(name, nameEnd - name);
      attributes_ = TagReader(text_, nameEnd);
      TagReader whole = attributes_;
      whole.Skip();
      tagEnd_ = whole.Position();
      valueEnd_ = 0;
      openEnd_ = whole.CutOff() || !scanner_.RawText().empty();
    } else if (all.size() > 1) {
      thing_.kind = Kind::declaration;
      openEnd_ = !all.ends_with('>');
    } else {
      thing_.begin = end_;  // a literal "<"
    }
  }
}

Surroundings SurroundingsFinder::InTag(std::size_t position) {
  if (!scanner_.RawText().empty() && position >= tagEnd_) {
    Surroundings text = thing_;
    text.kind = Kind::rawText;
    return text;
  }
  while (valueEnd_ < position) {
    if (attributes_.Position() >= tagEnd_) return thing_;
    RawAttribute attribute;
    if (!attributes_.Next(attribute) && !attributes_.CutOff()) return thing_;
    if (!attribute.hasValue) continue;
    value_ = {};
    value_.kind = Kind::attributeValue;
    value_.name = attribute.name;
    value_.tag = thing_.begin;
    value_.begin = static_cast<std::size_t>(attribute.value.data() - text_.data());
    valueEnd_ = value_.begin + attribute.value.size();
    const char before = text_[value_.begin - 1];
    if (before == '"' || before == '\'') value_.quote = before;
  }
  return position >= value_.begin ? value_ : thing_;
}

// The control ahead, or the one just read, and the part of the page before it.
struct PageSurroundings::Reading {
  explicit Reading(const Page& read)
      : page(read),
        reader(page.Bytes(), page.Encoding(), ControlReader::Params::known, ignored),
        before(page.Bytes(), reader.Reading()),
        found(reader.Next()) {}

  const Page& page;
  ProblemList ignored;
  ControlReader reader;
  SurroundingsFinder before;
  bool found;
};

PageSurroundings::PageSurroundings(const Page& page) {
  if (page.Encoding().kind() != PageEncoding::Kind::utf16)
    reading_ = std::make_unique<Reading>(page);
}
PageSurroundings::~PageSurroundings() = default;

Surroundings PageSurroundings::At(std::size_t position) {
  if (!reading_) return {};
  Reading& now = *reading_;
  while (now.found && position >= now.reader.Control().end) {
    now.before = SurroundingsFinder(now.page.Bytes(), now.reader.Reading());
    now.found = now.reader.Next();
  }
  if (!now.found || position <= now.reader.Control().begin) return now.before.At(position);
  Surroundings control;
  control.kind = Kind::control;
  control.begin = now.reader.Control().begin;
  return control;
}

Surroundings SurroundingsAt(const Page& page, std::size_t position) {
  return PageSurroundings(page).At(position);
}

Pasting PastingOf(const Surroundings& place, std::string_view runtimeText) {
  const auto holds = [&](std::string_view text) { return runtimeText.find(text) != npos; };
  const bool hasControlCharacter = std::any_of(
      runtimeText.begin(), runtimeText.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; });
  if (hasControlCharacter || !IsOneTag(runtimeText)) return Pasting::no;
  switch (place.kind) {
    case Kind::content:
    case Kind::tag:
      return Pasting::asItStands;
    case Kind::comment:
    case Kind::conditionalComment:
      return holds("-->") || holds("--!>") ? Pasting::no : Pasting::asItStands;
    case Kind::cdata:
      return holds("]]>") ? Pasting::no : Pasting::asItStands;
    case Kind::rawText:
      return holds("</") || holds("<!--") ? Pasting::no : Pasting::asItStands;
    case Kind::attributeValue:
      if (place.quote != '\0' && !holds({&place.quote, 1})) return Pasting::asItStands;
      return holds("'") ? Pasting::no : Pasting::inSingleQuotes;
    case Kind::declaration:
    case Kind::control:
      break;
  }
  return Pasting::no;
}

Message CannotHoldControl(const Surroundings& place, std::size_t line,
                          std::string_view runtimeText) {
  return messages::MisplacedControl(place, line, runtimeText, PastingOf(place, runtimeText));
}

}  // namespace kvo::page
