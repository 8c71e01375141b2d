#include "document/page/ControlChange.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <optional>

#include "common/values/Ascii.h"
#include "document/page/ElementWriter.h"
#include "document/page/Messages.h"
#include "document/page/ProblemList.h"
#include "document/page/Scanner.h"

namespace kvo::page {
namespace {

// A param as written.
struct WrittenParam {
  std::size_t begin = 0;  // of the white space before its tag
  std::size_t tag = 0;
  std::size_t end = 0;
  std::size_t valueBegin = 0;  // of its value, quotation marks included
  std::size_t valueEnd = 0;
};

// The params of a control's element by key, and where they begin.
struct WrittenElement {
  std::size_t firstParam = 0;
  std::map<std::string, WrittenParam, std::less<>> params;
};

// `at` is the "<" of an element that is not broken.
WrittenElement ReadElement(const Page& page, std::size_t at) {
  const std::string_view bytes = page.Bytes();
  TagReader start(bytes, at + kObjectStart.size());
  start.Skip();
  WrittenElement element;
  std::size_t next = element.firstParam = start.Position();
  for (;;) {
    WrittenParam param;
    param.begin = next;
    while (next < bytes.size() && IsHtmlSpace(bytes[next])) ++next;
    param.tag = next;
    const bool isParam = IsTagAt(bytes, next, "<", "param");
    if (!isParam && !IsTagAt(bytes, next, "</", "param")) return element;
    TagReader tag(bytes, EndOfTagName(bytes, next + (isParam ? 1 : 2)));
    RawAttribute attribute;
    std::string key;
    while (tag.Next(attribute)) {
      if (EqualIgnoringCase(attribute.name, "name")) {
        page.Encoding().DecodeAttribute(attribute.value, key);
      } else if (EqualIgnoringCase(attribute.name, "value")) {
        param.valueBegin = static_cast<std::size_t>(attribute.value.data() - bytes.data());
        param.valueEnd = param.valueBegin + attribute.value.size();
        const char before = bytes[param.valueBegin - 1];
        if (before != '"' && before != '\'') continue;
        --param.valueBegin;
        ++param.valueEnd;
      }
    }
    param.end = next = tag.Position();
    if (isParam) element.params.emplace(std::move(key), param);
  }
}

using Entries = std::vector<MemoryBag::Entry>;

const std::string* Find(const Entries& entries, std::string_view key) {
  const auto found = std::ranges::find(entries, key, &MemoryBag::Entry::first);
  return found == entries.end() ? nullptr : &found->second;
}

class ElementChange {
 public:
  ElementChange(const Page& page, const FoundControl& found)
      : page_(page), found_(found), element_(ReadElement(page, found.begin)) {}

  ControlChange Make(const Entries& before, const Entries& after) {
    // New params follow that of the row before.
    std::size_t place = element_.firstParam;
    std::string space;
    for (const PropertyRow& row : found_.contract->bag) {
      const std::string* const value = Find(after, row.key);
      const std::string* const former = Find(before, row.key);
      const auto written = element_.params.find(row.key);
      const bool isWritten = written != element_.params.end();
      if (isWritten) {
        const WrittenParam& param = written->second;
        space = page_.Bytes().substr(param.begin, param.tag - param.begin);
        place = param.end;
      }
      const bool same = value == nullptr || former == nullptr ? value == former : *value == *former;
      if (same) continue;
      if (value == nullptr) {
        if (isWritten) Add(written->second.begin, written->second.end, {});
      } else if (isWritten) {
        Add(written->second.valueBegin, written->second.valueEnd, Quoted(*value));
      } else {
        Add(place, place,
            space + "<param name=\"" + std::string(row.key) + "\" value=" + Quoted(*value) + ">");
      }
    }
    if (!made_.problems.empty()) made_.edits.clear();
    return std::move(made_);
  }

 private:
  // Joins what is inserted at one place.
  void Add(std::size_t begin, std::size_t end, std::string bytes) {
    TextEdits& edits = made_.edits;
    const auto at = std::ranges::upper_bound(edits, begin, {}, &TextEdit::begin);
    if (begin == end && at != edits.begin() && std::prev(at)->end == begin)
      std::prev(at)->bytes += bytes;
    else
      edits.insert(at, {begin, end, std::move(bytes)});
  }

  std::string Quoted(const std::string& value) {
    std::string text = "\"";
    if (const auto failure = AppendAttributeValue(value, page_.Encoding(), text))
      made_.problems.push_back(
          {Severity::error, rule::notInEncoding, found_.place, found_.className, found_.id,
           messages::ValueNotInEncoding(failure->text, page_.Encoding().Name()), found_.begin});
    return text += '"';
  }

  const Page& page_;
  const FoundControl& found_;
  WrittenElement element_;
  ControlChange made_;
};

// Saves the span alone, in a page that declares the same encoding.
ControlChange ChangeSpan(const Page& page, const FoundControl& found, const Entries& after,
                         bool force) {
  const std::string declaration = "<meta charset=\"" + page.Encoding().Name() + "\">";
  const Page alone(declaration +
                   std::string(page.Bytes().substr(found.begin, found.end - found.begin)));
  const Edit edit{0, [&after](Control& control) {
                    MemoryBag entries(after);
                    control.ReadProperties(entries);
                  }};
  StringSink sink;
  ControlChange made;
  for (Problem& problem : Save(alone, sink, {.force = force, .edit = &edit})) {
    if (problem.severity != Severity::error) continue;
    problem.offset = found.begin;
    problem.place = found.place;
    made.problems.push_back(std::move(problem));
  }
  if (made.problems.empty())
    made.edits.push_back({found.begin, found.end, sink.Take().substr(declaration.size())});
  return made;
}

}  // namespace

ControlChange ChangeControl(const Page& page, const FoundControl& found,
                            const std::function<void(Control&)>& change, bool force) {
  const std::shared_ptr<Control> control = Load(*found.contract, found.bag);
  const Entries before = StoredBag(*control);
  change(*control);
  const Entries after = StoredBag(*control);
  if (before == after) return {};
  return found.form == Form::span ? ChangeSpan(page, found, after, force)
                                  : ElementChange(page, found).Make(before, after);
}

}  // namespace kvo::page
