#include "document/page/ControlReader.h"

#include <algorithm>

#include "common/text/Suggest.h"
#include "common/values/Ascii.h"
#include "document/page/ElementWriter.h"
#include "document/page/Messages.h"
#include "document/page/OurElements.h"
#include "document/page/Utf8.h"
#include "host/registration/classes.h"

namespace kvo::page {
namespace {

constexpr std::size_t kParamTag = std::string_view("<param").size();

constexpr std::size_t kShownBytes = 80;  // of page text in messages

std::string_view FirstLine(std::string_view text) {
  return text.substr(0, text.find_first_of("\r\n"));
}

std::string_view NearestClass(std::string_view className) {
  std::vector<std::string_view> names;
  for (const RegisteredControl& control : RegisteredControls())
    names.push_back(control.contract().name);
  return Suggest(className, names);
}

std::string_view NearestKey(const ControlClass& contract, std::string_view key) {
  std::vector<std::string_view> keys;
  for (const PropertyRow& row : contract.bag) keys.push_back(row.key);
  return Suggest(key, keys);
}

// Whether an attribute's name reads back as the same name when written.
bool IsWritableName(std::string_view name) {
  return name.find_first_of(std::string_view("\"'<=\0", 5)) == npos;
}

// Returns the length of the element that `text` begins with: its start tag's when it has no end
// tag.
std::size_t ElementSize(std::string_view text) {
  for (std::size_t at = text.find("</"); at != npos; at = text.find("</", at + 1))
    if (IsTagAt(text, at, "</", "object")) return std::min(text.find('>', at), text.size() - 1) + 1;
  TagReader tag(text, kObjectStart.size());
  tag.Skip();
  return tag.Position();
}

}  // namespace

bool ControlReader::Next() {
  while (!refused_) {
    decodedInUse_ = 0;
    const Scanner before = foreignObject_.value_or(scanner_);
    const std::size_t from = before.Position() + (foreignObject_ ? kObjectStart.size() : 0);
    foreignObject_.reset();
    const Scanner::Kind kind = scanner_.Next();
    const std::size_t at = scanner_.Position();
    FindMisplaced(before, from, at);
    bool found = false;
    switch (kind) {
      case Scanner::Kind::end:
        return false;
      case Scanner::Kind::spanEnd:
        ReportStrayEnd(at);
        scanner_.SeekTo(BehindComment(at));
        break;
      case Scanner::Kind::object:
        found = ReadObject(at);
        break;
      case Scanner::Kind::spanStart:
        found = ReadSpan(at);
        break;
    }
    if (!found) continue;
    if (encoding_.kind() == PageEncoding::Kind::other) {
      Fail({at, control_.end}, rule::encoding, messages::OtherEncoding(encoding_.Name()));
      refused_ = true;
    }
    ++count_;
    return true;
  }
  return false;
}

void ControlReader::ReadSpanTextAsPage(std::size_t ownSize) {
  if (!spanEnds_) IndexSpanEnds(control_.textBegin);
  scanner_.SeekTo(control_.textBegin + ownSize);
}

void ControlReader::FindMisplaced(const Scanner& before, std::size_t from, std::size_t to) {
  OurElements elements(page_, from, to, encoding_);
  std::optional<SurroundingsFinder> surroundings;
  while (const auto element = elements.Next()) {
    if (!surroundings) surroundings.emplace(page_, before);
    const Surroundings place = surroundings->At(element->begin);
    const bool isValue = place.kind == Surroundings::Kind::attributeValue;
    const std::size_t line = (isValue ? valuePlaces_ : places_).At(place.begin).line;
    // Remembers that the element's start comment is misplaced as well.
    if (const std::size_t number = SpanNumberBefore(page_, element->begin); number != 0)
      misplacedSpans_[number] = {place, line};
    const std::string_view text = page_.substr(element->begin, element->end - element->begin);
    const LoneElement alone = ReadAlone(text, encoding_);
    problems_.Add({element->begin, element->begin + ElementSize(text)}, rule::misplacedControl,
                  {alone.className, alone.id}, CannotHoldControl(place, line, alone.runtimeText));
  }
}

void ControlReader::ReportStrayEnd(std::size_t at) {
  const Range where{at, BehindComment(at)};
  std::string_view rest = page_.substr(at + kSpanEnd.size());
  const auto misplaced = misplacedSpans_.find(TakeNumber(rest));
  if (misplaced == misplacedSpans_.end()) {
    problems_.Add(where, rule::strayEnd, {}, messages::StrayEnd());
    return;
  }
  problems_.Add(where, rule::strayEnd, {},
                messages::StrayEndOfMisplaced(misplaced->second.place, misplaced->second.line));
  misplacedSpans_.erase(misplaced);
}

bool ControlReader::ReadObject(std::size_t at) {
  inComment_ = false;
  std::size_t end = at;
  const bool ours = ReadElement(end);
  if (!ours) foreignObject_ = scanner_;
  scanner_.SeekTo(end);
  if (!ours) return false;
  control_.begin = at;
  control_.end = end;
  const bool closed = !stopped_ && ReadParams(end);
  if (!closed && !stopped_) Fail({at, end}, rule::unclosedControl, messages::UnclosedControl());
  control_.end = end;
  scanner_.SeekTo(end);
  return true;
}

bool ControlReader::ReadSpan(std::size_t at) {
  inComment_ = true;
  commentEnd_ = EndOfComment(page_, at);
  const auto refuse = [&](Message message) {
    const std::size_t end = std::min(commentEnd_, page_.size());
    problems_.Add({at, end}, rule::malformedSpan, {}, std::move(message));
    scanner_.SeekTo(end);
    return false;
  };
  std::string_view rest = page_.substr(at + kSpanStart.size());
  const std::size_t number = TakeNumber(rest);
  if (number == 0 || !rest.starts_with(' ')) return refuse(messages::SpanWithoutNumber());
  std::size_t element = OffsetOf(rest) + 1;
  if (!IsTagAt(page_, element, "<", "object") || !ReadElement(element))
    return refuse(messages::SpanWithoutControl());
  control_.begin = at;
  control_.isSpan = true;
  control_.number = number;
  const bool closed = !stopped_ && ReadParams(element);
  if (!closed && !stopped_) Fail({at, element}, rule::unclosedControl, messages::UnclosedControl());
  ReadSpanText(element, closed);
  scanner_.SeekTo(control_.end);
  // Keeps a broken control whose end comment is also lost from hiding the controls after it.
  if (control_.broken && control_.OldText(page_).find(kSpanStart) != npos) ReadSpanTextAsPage();
  return true;
}

void ControlReader::ReadSpanText(std::size_t at, bool elementClosed) {
  const std::size_t begin = control_.begin;
  std::size_t text = 0;
  if (elementClosed) {
    while (at < page_.size() && IsHtmlSpace(page_[at])) ++at;
    if (page_.substr(at, kCommentEnd.size()) == kCommentEnd) {
      text = at + kCommentEnd.size();
    } else if (at < page_.size()) {
      Fail({at, std::min(commentEnd_, page_.size())}, rule::malformedSpan,
           messages::SpanCommentGoesOn());
    }
  }
  if (text == 0) {
    text = commentEnd_;
    if (text == npos) {
      Fail({begin, at}, rule::malformedSpan, messages::SpanCommentNeverEnds());
      control_.textBegin = control_.textEnd = control_.end = page_.size();
      return;
    }
  }
  control_.textBegin = control_.textEnd = control_.end = text;
  const std::size_t end = FindSpanEnd(text, control_.number);
  if (end == npos) {
    Fail({begin, text}, rule::missingEnd, messages::MissingEnd(EndComment(control_.number)));
    return;
  }
  control_.textEnd = end;
  control_.end = BehindComment(end);
}

bool ControlReader::ReadElement(std::size_t& at) {
  stopped_ = isOurs_ = false;
  const std::size_t begin = at;
  TagReader tag(page_, begin + kObjectStart.size());
  RawAttribute attribute;
  bool isFirst = true;
  bool found = false;
  while (!found && NextAttribute(tag, attribute)) {
    found = EqualIgnoringCase(attribute.name, "classid");
    if (!found) isFirst = false;
  }
  if (!found || !ReadClass(attribute)) {
    while (!stopped_ && found && NextAttribute(tag, attribute)) {
    }
    at = tag.Position();
    return false;
  }
  isOurs_ = true;
  control_.index = count_;
  control_.begin = control_.textBegin = control_.textEnd = begin;
  control_.isSpan = false;
  control_.id.reset();
  control_.attributes.clear();
  control_.params.clear();
  control_.broken = control_.contract == nullptr;
  control_.paramOfKey.assign(control_.contract == nullptr ? 0 : control_.contract->bag.size(),
                             ReadControl::kNoParam);
  if (!isFirst) tag = TagReader(page_, begin + kObjectStart.size());
  ReadAttributes(tag, isFirst);
  at = tag.Position();
  if (control_.contract == nullptr)
    Fail({begin, at}, rule::unknownClass,
         messages::UnknownClass(control_.className, NearestClass(control_.className)));
  return true;
}

bool ControlReader::ReadClass(const RawAttribute& classId) {
  if (lastContract_ != nullptr && classId.value == lastClassId_) {
    control_.contract = lastContract_;
    control_.className = lastContract_->name;
    return true;
  }
  std::string value;
  encoding_.DecodeAttribute(classId.value, value);
  if (const RegisteredControl* control = FindControlByClassId(value)) {
    control_.contract = lastContract_ = &control->contract();
    control_.className = lastContract_->name;
    lastClassId_ = classId.value;
    return true;
  }
  if (!IsOurProgId(value)) return false;
  // Decoding may report a problem, which must not name the previous control.
  control_.contract = nullptr;
  control_.className = {};
  control_.id.reset();
  control_.className = Decoded(classId);
  const std::size_t dot = control_.className.find('.');
  control_.className.remove_prefix(dot == npos ? control_.className.size() : dot + 1);
  return true;
}

void ControlReader::ReadAttributes(TagReader& tag, bool hasClassId) {
  RawAttribute attribute;
  while (NextAttribute(tag, attribute)) {
    if (EqualIgnoringCase(attribute.name, "classid")) {
      if (hasClassId)
        Fail(RangeOf(attribute), rule::attribute, messages::DuplicateAttribute("classid"));
      hasClassId = true;
    } else if (EqualIgnoringCase(attribute.name, "id")) {
      if (control_.id)
        Fail(RangeOf(attribute), rule::attribute, messages::DuplicateAttribute("id"));
      else
        control_.id = Decoded(attribute);
    } else {
      control_.attributes.push_back({attribute.name, Decoded(attribute), attribute.hasValue});
    }
  }
  if (!control_.attributes.empty()) CheckAttributeNames({control_.begin, tag.Position()});
}

void ControlReader::CheckAttributeNames(Range tag) {
  std::vector<std::string> names;
  for (const ReadControl::Attribute& attribute : control_.attributes) {
    std::string name;
    const bool valid = encoding_.Decode(attribute.name, name) == npos;
    if (!valid || !IsWritableName(attribute.name))
      Fail(tag, rule::attribute, messages::UnwritableAttribute(Printable(attribute.name)));
    names.push_back(Lowered(name));
  }
  std::sort(names.begin(), names.end());
  for (auto twin = std::adjacent_find(names.begin(), names.end()); twin != names.end();
       twin = std::adjacent_find(twin + 1, names.end()))
    Fail(tag, rule::attribute, messages::DuplicateAttribute(*twin));
}

bool ControlReader::ReadParams(std::size_t& at) {
  bool reported = false;
  while (at < page_.size()) {
    if (IsHtmlSpace(page_[at])) {
      ++at;
      continue;
    }
    if (IsTagAt(page_, at, "<", "param")) {
      ReadParam(at);
      if (stopped_) return false;
      continue;
    }
    const bool closesObject = IsTagAt(page_, at, "</", "object");
    if (closesObject || IsTagAt(page_, at, "</", "param")) {
      TagReader tag(page_, at + std::string_view(closesObject ? "</object" : "</param").size());
      RawAttribute attribute;
      while (NextAttribute(tag, attribute))
        Fail(RangeOf(attribute), rule::unexpectedContent,
             messages::UnexpectedContent(Printable(attribute.name)));
      at = tag.Position();
      if (closesObject || stopped_) return closesObject && !stopped_;
      continue;
    }
    const std::string_view rest = page_.substr(at);
    if (IsTagAt(page_, at, "<", "object") || rest.starts_with(kSpanStart) ||
        rest.starts_with(kSpanEnd) || (inComment_ && rest.starts_with(kCommentEnd)))
      return false;
    // Saving would lose anything else. Reports that once, then looks for more params.
    if (!reported) {
      const std::string_view shown = FirstLine(rest.substr(0, kShownBytes));
      Fail(RangeOf(shown), rule::unexpectedContent, messages::UnexpectedContent(Printable(shown)));
    }
    reported = true;
    if (inComment_) {
      stopped_ = true;
      return false;
    }
    if (page_[at] == '<') {
      scanner_.SeekTo(at);
      scanner_.SkipOne();
      at = scanner_.Position();
    } else {
      at = std::min(page_.find('<', at), page_.size());
    }
  }
  return false;
}

void ControlReader::ReadParam(std::size_t& at) {
  const std::size_t begin = at;
  TagReader tag(page_, begin + kParamTag);
  RawAttribute attribute;
  std::optional<std::string_view> key;
  std::optional<std::string_view> value;
  while (NextAttribute(tag, attribute)) {
    if (!key && EqualIgnoringCase(attribute.name, "name")) {
      key = Decoded(attribute);
    } else if (!value && EqualIgnoringCase(attribute.name, "value")) {
      value = Decoded(attribute);
      if (!attribute.hasValue) value.reset();
    } else {
      Fail(RangeOf(attribute), rule::malformedParam,
           messages::ParamAttribute(Printable(attribute.name)));
    }
  }
  at = tag.Position();
  if (stopped_) return;
  const Range whole{begin, at};
  if (!key || key->empty()) return Fail(whole, rule::malformedParam, messages::ParamWithoutName());
  if (!value) Fail(whole, rule::malformedParam, messages::ParamWithoutValue(*key));
  AddParam(whole, *key, value.value_or(std::string_view()));
}

void ControlReader::AddParam(Range where, std::string_view key, std::string_view value) {
  if (control_.contract != nullptr) {
    const PropertyRow* const row = control_.contract->FindKey(key);
    if (row == nullptr) {
      Fail(where, rule::unknownKey, messages::UnknownKey(key, NearestKey(*control_.contract, key)));
    } else {
      auto& param =
          control_.paramOfKey[static_cast<std::size_t>(row - control_.contract->bag.data())];
      if (param == ReadControl::kNoParam) {
        param = control_.params.size();
        control_.params.push_back({key, value});
        return;
      }
      Fail(where, rule::duplicateParam, messages::DuplicateParam(key));
    }
  }
  if (allParams_) control_.params.push_back({key, value});
}

bool ControlReader::NextAttribute(TagReader& tag, RawAttribute& attribute) {
  const bool found = tag.Next(attribute);
  if (!found && tag.CutOff()) {
    stopped_ = true;
    if (isOurs_)
      Fail({control_.begin, tag.Position()}, rule::unclosedControl, messages::CutOffTag());
    return false;
  }
  if (!inComment_ || tag.Position() < commentEnd_) return found;
  stopped_ = true;
  if (isOurs_)
    Fail({commentEnd_ - kCommentEnd.size(), commentEnd_}, rule::malformedSpan,
         messages::SpanCommentEndsEarly());
  return false;
}

std::string_view ControlReader::Decoded(const RawAttribute& attribute) {
  const bool isAscii = AsciiPrefix(attribute.value) == attribute.value.size();
  if (isAscii && attribute.value.find('&') == npos) return attribute.value;
  if (decodedInUse_ == decoded_.size()) decoded_.emplace_back();
  std::string& text = decoded_[decodedInUse_++];
  text.clear();
  const std::size_t invalid = encoding_.DecodeAttribute(attribute.value, text);
  if (invalid != npos && encoding_.kind() != PageEncoding::Kind::other)
    Fail(RangeOf(attribute.value.substr(invalid, 1)), rule::invalidBytes,
         messages::InvalidBytes(static_cast<unsigned char>(attribute.value[invalid]),
                                encoding_.Name()));
  return text;
}

std::string ControlReader::Printable(std::string_view bytes) const {
  bytes = bytes.substr(0, kShownBytes);
  std::string text;
  for (;;) {
    const std::size_t invalid = encoding_.Decode(bytes, text);
    if (invalid == npos) return text;
    AppendUtf8(text, kReplacementCharacter);
    bytes.remove_prefix(invalid + 1);
  }
}

void ControlReader::Fail(Range where, std::string_view rule, Message message) {
  control_.broken = true;
  problems_.Add(where, rule, control_.Subject(), std::move(message));
}

std::size_t ControlReader::FindSpanEnd(std::size_t from, std::size_t number) {
  if (!spanEnds_) {
    const std::size_t end = page_.find(EndComment(number), from);
    if (end == npos) IndexSpanEnds(from);
    return end;
  }
  const auto entry =
      std::lower_bound(spanEnds_->begin(), spanEnds_->end(), SpanEndEntry(number, from));
  return entry != spanEnds_->end() && entry->first == number ? entry->second : npos;
}

void ControlReader::IndexSpanEnds(std::size_t from) {
  spanEnds_.emplace();
  for (std::size_t at = page_.find(kSpanEnd, from); at != npos;
       at = page_.find(kSpanEnd, at + kSpanEnd.size())) {
    std::string_view rest = page_.substr(at + kSpanEnd.size());
    const std::size_t number = TakeNumber(rest);
    if (number != 0 && rest.starts_with(kCommentEnd)) spanEnds_->push_back({number, at});
  }
  std::sort(spanEnds_->begin(), spanEnds_->end());
}

}  // namespace kvo::page
