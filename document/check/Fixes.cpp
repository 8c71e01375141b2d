#include "document/check/Fixes.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

#include "common/text/Suggest.h"
#include "common/values/Ascii.h"
#include "common/values/RuntimeError.h"
#include "document/page/ElementWriter.h"
#include "document/page/Messages.h"
#include "document/page/OurElements.h"
#include "document/page/Scanner.h"
#include "host/registration/classes.h"

namespace kvo::check {
namespace {

using page::Fix;
using page::FoundControl;
using page::Problem;
using page::TextEdit;
using page::messages::Plain;
using page::messages::Quoting;

constexpr std::string_view kObjectEnd = "</object>";

// An attribute of a tag, with its bytes.
struct WrittenAttribute {
  page::RawAttribute raw;
  std::size_t begin = 0;  // of the white space before it
  std::size_t end = 0;    // behind its closing quotation mark
};

// The attributes of the tag whose name ends at `at`.
std::vector<WrittenAttribute> AttributesOf(std::string_view bytes, std::size_t at) {
  std::vector<WrittenAttribute> attributes;
  page::TagReader tag(bytes, at);
  page::RawAttribute raw;
  while (tag.Next(raw)) {
    const auto offset = [&](std::string_view part) {
      return static_cast<std::size_t>(part.data() - bytes.data());
    };
    WrittenAttribute written{raw, offset(raw.name), offset(raw.name) + raw.name.size()};
    if (raw.hasValue) {
      const std::size_t value = offset(raw.value);
      const char quote = bytes[value - 1];
      written.end = value + raw.value.size() + (quote == '"' || quote == '\'' ? 1 : 0);
    }
    while (written.begin > 0 && page::IsHtmlSpace(bytes[written.begin - 1])) --written.begin;
    attributes.push_back(written);
  }
  return attributes;
}

const page::RawAttribute* Find(const std::vector<WrittenAttribute>& attributes,
                               std::string_view name) {
  for (const WrittenAttribute& attribute : attributes)
    if (EqualIgnoringCase(attribute.raw.name, name)) return &attribute.raw;
  return nullptr;
}

class PageFixes {
 public:
  PageFixes(const page::Page& page, const std::vector<FoundControl>& controls,
            const page::Problems& problems)
      : page_(page), bytes_(page.Bytes()), controls_(controls), problems_(problems) {}

  std::optional<Fix> For(const Problem& problem) {
    const Maker maker = MakerOf(problem.rule);
    if (maker == nullptr) return std::nullopt;
    const FoundControl* const control = ControlAt(problem.offset);
    if (control == nullptr) return std::nullopt;
    // Bounds the time: a control may hold any number of problems.
    rechecked_ += control->end - control->begin;
    if (rechecked_ > kMostRechecked) return std::nullopt;
    std::optional<Fix> fix = (this->*maker)(problem, *control);
    if (!fix || fix->edits.empty() || !Mends(*fix, problem, *control)) return std::nullopt;
    return fix;
  }

 private:
  using Maker = std::optional<Fix> (PageFixes::*)(const Problem&, const FoundControl&);
  static Maker MakerOf(std::string_view rule) {
    if (rule == page::rule::unknownClass) return &PageFixes::NameClass;
    if (rule == page::rule::unknownKey) return &PageFixes::NameKey;
    if (rule == page::rule::duplicateParam) return &PageFixes::DropParam;
    if (rule == page::rule::attribute) return &PageFixes::DropAttributes;
    if (rule == page::rule::unclosedControl) return &PageFixes::Close;
    if (rule == page::rule::missingEnd) return &PageFixes::EndSpan;
    return nullptr;
  }

  static constexpr std::size_t kMostRechecked = 1 << 20;

  const FoundControl* ControlAt(std::size_t offset) const {
    auto after = std::ranges::upper_bound(controls_, offset, {}, &FoundControl::begin);
    if (after == controls_.begin()) return nullptr;
    const FoundControl& control = *std::prev(after);
    return offset < control.end ? &control : nullptr;
  }
  // Where the control's object element begins.
  std::size_t ElementOf(const FoundControl& control) const {
    return page::FindObject(bytes_, control.begin, control.end);
  }
  std::string Decoded(std::string_view value) const {
    std::string text;
    page_.Encoding().DecodeAttribute(value, text);
    return text;
  }
  TextEdit Change(std::string_view part, std::string text) const {
    const auto begin = static_cast<std::size_t>(part.data() - bytes_.data());
    return {begin, begin + part.size(), std::move(text)};
  }

  std::optional<Fix> NameClass(const Problem&, const FoundControl& control) {
    std::vector<std::string_view> names;
    for (const RegisteredControl& each : RegisteredControls())
      names.push_back(each.contract().name);
    const Suggestion near = SuggestNear(control.className, names);
    if (!near.only) return std::nullopt;
    const auto attributes = AttributesOf(bytes_, ElementOf(control) + page::kObjectStart.size());
    const page::RawAttribute* const classId = Find(attributes, "classid");
    if (classId == nullptr || !classId->value.ends_with(control.className)) return std::nullopt;
    return Fix{ChangeTitle(control.className, std::string(near.name)),
               {Change(classId->value.substr(classId->value.size() - control.className.size()),
                       std::string(near.name))}};
  }

  std::optional<Fix> NameKey(const Problem& problem, const FoundControl& control) {
    if (control.contract == nullptr) return std::nullopt;
    const auto attributes = AttributesOf(bytes_, NameEnd(problem.offset));
    const page::RawAttribute* const name = Find(attributes, "name");
    if (name == nullptr) return std::nullopt;
    std::vector<std::string_view> keys;
    for (const PropertyRow& row : control.contract->bag) keys.push_back(row.key);
    const std::string key = Decoded(name->value);
    const Suggestion near = SuggestNear(key, keys);
    // Another param may be or become the same key.
    const bool taken = std::ranges::count_if(control.bag, [&](const MemoryBag::Entry& entry) {
                         return SuggestNear(entry.first, keys).name == near.name;
                       }) > 1;
    if (!near.only || taken) return std::nullopt;
    return Fix{ChangeTitle(key, std::string(near.name)),
               {Change(name->value, std::string(near.name))}};
  }

  std::optional<Fix> DropParam(const Problem& problem, const FoundControl& control) {
    constexpr Quoting kTitle = {"Den zweiten param {} löschen", "Delete the second param {}"};
    const auto attributes = AttributesOf(bytes_, NameEnd(problem.offset));
    const page::RawAttribute* const name = Find(attributes, "name");
    if (name == nullptr) return std::nullopt;
    const std::string key = Decoded(name->value);
    const std::string* value = nullptr;
    for (const auto& [otherKey, other] : control.bag) {
      if (otherKey != key) continue;
      if (value != nullptr && *value != other) return std::nullopt;
      value = &other;
    }
    std::size_t begin = problem.offset;
    while (page::IsHtmlSpace(bytes_[begin - 1])) --begin;
    std::size_t end = problem.end;
    if (page::IsTagAt(bytes_, end, "</", "param")) {
      page::TagReader tag(bytes_, NameEnd(end + 1));
      tag.Skip();
      end = tag.Position();
    }
    return Fix{kTitle(key), {{begin, end, {}}}};
  }

  // Several problems of one tag have this same fix.
  std::optional<Fix> DropAttributes(const Problem&, const FoundControl& control) {
    Fix fix{{"Das doppelte Attribut löschen", "Delete the doubled attribute"}, {}};
    std::map<std::string, std::string> values;
    for (const WrittenAttribute& attribute :
         AttributesOf(bytes_, ElementOf(control) + page::kObjectStart.size())) {
      const std::string value = Decoded(attribute.raw.value);
      const auto [first, isNew] = values.emplace(Lowered(attribute.raw.name), value);
      if (isNew) continue;
      if (first->second != value) return std::nullopt;
      fix.edits.push_back({attribute.begin, attribute.end, {}});
    }
    return fix;
  }

  // Closes a control behind its last param.
  std::optional<Fix> Close(const Problem&, const FoundControl& control) {
    constexpr Plain kTitle = {"{} ergänzen", "Add {}"};
    page::TagReader start(bytes_, ElementOf(control) + page::kObjectStart.size());
    start.Skip();
    std::size_t at = start.Position();
    std::size_t end = at;
    for (;;) {
      while (at < control.end && page::IsHtmlSpace(bytes_[at])) ++at;
      const bool isParam = page::IsTagAt(bytes_, at, "<", "param");
      if (!isParam && !page::IsTagAt(bytes_, at, "</", "param")) break;
      page::TagReader tag(bytes_, NameEnd(isParam ? at : at + 1));
      tag.Skip();
      at = end = tag.Position();
    }
    // Params further on belong to the control, but what stands before them does not.
    for (; at < control.end; ++at)
      if (page::IsTagAt(bytes_, at, "<", "param")) return std::nullopt;
    return Fix{kTitle(kObjectEnd), {{end, end, std::string(kObjectEnd)}}};
  }

  // Ends a span whose own text follows its start comment.
  std::optional<Fix> EndSpan(const Problem&, const FoundControl& control) {
    constexpr Plain kTitle = {"{} ergänzen", "Add {}"};
    if (control.contract == nullptr || control.form != page::Form::span) return std::nullopt;
    std::string_view number = bytes_.substr(control.begin + page::kSpanStart.size());
    const std::string comment = page::EndComment(page::TakeNumber(number));
    std::string text;
    try {
      const std::string runtimeText = page::Load(*control.contract, control.bag)->GetRuntimeText();
      if (page::AppendText(runtimeText, page_.Encoding(), text)) return std::nullopt;
    } catch (const RuntimeError&) {
      return std::nullopt;
    }
    if (text.empty() || !bytes_.substr(control.textBegin).starts_with(text)) return std::nullopt;
    const std::size_t end = control.textBegin + text.size();
    // An end comment with another number that follows is this control's.
    const bool otherEnd = bytes_.substr(end).starts_with(page::kSpanEnd);
    const std::size_t after = otherEnd ? page::EndOfComment(bytes_, end) : end;
    if (after == page::npos) return std::nullopt;
    return Fix{kTitle(comment), {{end, after, comment}}};
  }

  // The end of the name of the tag whose "<" (or "/") is at `at`.
  std::size_t NameEnd(std::size_t at) const { return page::EndOfTagName(bytes_, at + 1); }

  using Counts = std::map<std::string_view, std::size_t>;
  static Counts ErrorsOf(const page::Problems& problems, std::size_t from, std::size_t to) {
    Counts counts;
    for (auto each = std::ranges::lower_bound(problems, from, {}, &Problem::offset);
         each != problems.end() && each->offset < to; ++each)
      if (each->severity == page::Severity::error) ++counts[each->rule];
    return counts;
  }

  // Whether the control, fixed and alone in a page of the same encoding, has the problem no more
  // and no further error.
  bool Mends(const Fix& fix, const Problem& problem, const FoundControl& control) {
    const std::size_t end = std::max(control.end, fix.edits.back().end);
    page::TextEdits edits = fix.edits;
    for (TextEdit& edit : edits) {
      edit.begin -= control.begin;
      edit.end -= control.begin;
    }
    const std::string declaration = "<meta charset=\"" + page_.Encoding().Name() + "\">";
    const page::Page alone(declaration +
                           page::Applied(bytes_.substr(control.begin, end - control.begin), edits));
    Counts before = ErrorsOf(problems_, control.begin, end);
    const Counts after = ErrorsOf(page::Check(alone), 0, alone.Bytes().size());
    return std::ranges::all_of(after, [&](const auto& count) {
      return count.second + (count.first == problem.rule ? 1 : 0) <= before[count.first];
    });
  }

  const page::Page& page_;
  std::string_view bytes_;
  const std::vector<FoundControl>& controls_;
  const page::Problems& problems_;
  std::size_t rechecked_ = 0;  // bytes
};

}  // namespace

Message ChangeTitle(const std::string& from, const std::string& to) {
  constexpr Quoting kTitle = {"{} in {} ändern", "Change {} to {}"};
  return kTitle(from, to);
}

void AddPageFixes(const page::Page& page, const std::vector<FoundControl>& controls,
                  page::Problems& problems) {
  const page::PageEncoding::Kind kind = page.Encoding().kind();
  if (kind == page::PageEncoding::Kind::utf16 || kind == page::PageEncoding::Kind::other) return;
  PageFixes fixes(page, controls, problems);
  for (Problem& problem : problems)
    if (!problem.fix) problem.fix = fixes.For(problem);
}

}  // namespace kvo::check
