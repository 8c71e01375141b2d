#include "document/page/ControlChange.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "document/page/ElementWriter.h"
#include "document/page/Messages.h"
#include "document/page/ProblemList.h"
#include "document/page/WrittenElement.h"

namespace kvo::page {
namespace {

using Entries = std::vector<MemoryBag::Entry>;

const std::string* Find(const Entries& entries, std::string_view key) {
  const auto found = std::ranges::find(entries, key, &MemoryBag::Entry::first);
  return found == entries.end() ? nullptr : &found->second;
}

class ElementChange {
 public:
  ElementChange(const Page& page, const FoundControl& found)
      : page_(page), found_(found), element_(ReadWrittenElement(page, found)) {}

  ControlChange Make(const Entries& before, const Entries& after) {
    // New params follow that of the row before.
    std::size_t place = element_.firstParam;
    std::string space;
    for (const PropertyRow& row : found_.contract->bag) {
      const std::string* const value = Find(after, row.key);
      const std::string* const former = Find(before, row.key);
      const auto written = std::ranges::find(element_.params, row.key, &WrittenParam::key);
      const bool isWritten = written != element_.params.end();
      if (isWritten) {
        space = page_.Bytes().substr(written->begin, written->tag - written->begin);
        place = written->end;
      }
      const bool same = value == nullptr || former == nullptr ? value == former : *value == *former;
      if (same) continue;
      if (value == nullptr) {
        if (isWritten) Add(written->begin, written->end, {});
      } else if (isWritten) {
        // A control that is not broken has a value in every param.
        const std::size_t mark = written->value->quoted ? 1 : 0;
        Add(written->value->begin - mark, written->value->end + mark, Quoted(*value));
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
