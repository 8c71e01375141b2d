#include "document/adopt/Adopt.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "document/adopt/Making.h"
#include "document/adopt/Placeholders.h"
#include "document/adopt/Tags.h"
#include "document/adopt/Words.h"
#include "document/page/ProblemList.h"

namespace kvo::adopt {
namespace {

// One edit of a find.
struct Part {
  std::size_t find = 0;  // its number
  const page::TextEdit* edit = nullptr;
  const page::TextEdit* published = nullptr;
  std::size_t newBegin = 0;  // in the new page
  std::size_t size = 0;
};

// Makes finds, publishes the result, and leaves out what gives other bytes, until nothing does.
class Proof {
 public:
  Proof(const page::Page& page, std::vector<Find> finds) : page_(page), finds_(std::move(finds)) {}

  Adopted Make() {
    constexpr int kMostRounds = 16;
    LeaveOutOverlaps();
    for (int round = 0; !Holds(); ++round)
      if (round == kMostRounds) LeaveOutAll(words::NotTheSame());
    return {std::move(edits_), std::move(bytes_), std::move(finds_)};
  }

 private:
  bool IsMade(const Find& find) const { return find.chosen && !find.edits.empty(); }

  void LeaveOut(Find& find, const Message& reason) {
    find.result = Find::Result::stays;
    find.reason = reason;
    find.edits.clear();
    find.published.clear();
  }
  void LeaveOutAll(const Message& reason) {
    for (Find& find : finds_)
      if (IsMade(find)) LeaveOut(find, reason);
  }

  std::vector<Part> Parts() const {
    std::vector<Part> parts;
    for (std::size_t i = 0; i < finds_.size(); ++i) {
      if (!IsMade(finds_[i])) continue;
      for (std::size_t e = 0; e < finds_[i].edits.size(); ++e)
        parts.push_back({i, &finds_[i].edits[e], &finds_[i].published[e]});
    }
    std::ranges::sort(parts, {}, [](const Part& part) { return part.edit->begin; });
    return parts;
  }

  void LeaveOutOverlaps() {
    std::size_t end = 0;
    std::vector<std::size_t> overlapping;
    for (const Part& part : Parts()) {
      if (part.edit->begin < end) overlapping.push_back(part.find);
      end = std::max(end, part.edit->end);
    }
    for (const std::size_t find : overlapping) LeaveOut(finds_[find], words::NotTheSame());
  }

  // Whether the new page publishes as it should; else leaves out at least one find.
  bool Holds() {
    std::vector<Part> parts = Parts();
    edits_.clear();
    page::TextEdits published;
    std::size_t shift = 0;  // wraps around
    for (Part& part : parts) {
      part.newBegin = part.edit->begin + shift;
      part.size = part.edit->bytes.size();
      shift += part.size - (part.edit->end - part.edit->begin);
      edits_.push_back(*part.edit);
      published.push_back(*part.published);
    }
    bytes_ = page::Applied(page_.Bytes(), edits_);
    if (parts.empty()) return true;
    const page::Page page(bytes_);
    if (!page.Encoding().ReadsAs(page_.Encoding())) return LeaveOutHead(parts);

    page::StringSink wanted;
    const bool wantedIsSound = !page::HasErrors(
        page::Publish(page::Page(page::Applied(page_.Bytes(), published)), wanted));
    const page::PublishedPage given = page::PublishWithPlaces(page);
    if (!LeaveOutOthers(parts, given)) return false;
    if (!wantedIsSound || given.bytes != wanted.Text())
      return LeaveOutAt(parts, given, wanted.Text());
    return LeaveOutProblems(parts, page::Check(page)) && LeaveOutProblems(parts, given.problems);
  }

  // Each new control is to give its own text. True when all do.
  bool LeaveOutOthers(const std::vector<Part>& parts, const page::PublishedPage& given) {
    std::vector<std::size_t> others;
    for (const Part& part : parts) {
      if (finds_[part.find].result == Find::Result::tag) continue;
      const auto control = std::ranges::lower_bound(given.controls, part.newBegin, {},
                                                    &page::PublishedControl::sourceBegin);
      const bool same =
          control != given.controls.end() && control->sourceBegin == part.newBegin &&
          !control->failed &&
          std::string_view(given.bytes).substr(control->begin, control->end - control->begin) ==
              part.published->bytes;
      if (!same) others.push_back(part.find);
    }
    for (const std::size_t find : others) LeaveOut(finds_[find], words::NotTheSame());
    return others.empty();
  }

  // Leaves out the find before the first difference, or else all.
  bool LeaveOutAt(const std::vector<Part>& parts, const page::PublishedPage& given,
                  const std::string& wanted) {
    const auto difference = std::ranges::mismatch(given.bytes, wanted).in1;
    const auto at = static_cast<std::size_t>(difference - given.bytes.begin());
    const auto behind =
        std::ranges::upper_bound(given.controls, at, {}, &page::PublishedControl::begin);
    if (behind == given.controls.begin()) {
      LeaveOutAll(words::NotTheSame());
      return false;
    }
    const auto part =
        std::ranges::upper_bound(parts, std::prev(behind)->sourceBegin, {}, &Part::newBegin);
    if (part == parts.begin())
      LeaveOutAll(words::NotTheSame());
    else
      LeaveOut(finds_[std::prev(part)->find], words::NotTheSame());
    return false;
  }

  // A new page that could not be saved is no good either. True when there is no new problem.
  bool LeaveOutProblems(const std::vector<Part>& parts, const page::Problems& problems) {
    std::vector<std::pair<std::size_t, const Message*>> faulty;
    for (const page::Problem& problem : problems) {
      if (problem.severity != page::Severity::error) continue;
      if (problem.rule == page::rule::encodingChanges) return LeaveOutHead(parts);
      if (problem.rule == page::rule::encoding) {
        LeaveOutAll(problem.message);
        return false;
      }
      const auto behind = std::ranges::upper_bound(parts, problem.offset, {}, &Part::newBegin);
      if (behind == parts.begin()) continue;
      const Part& part = *std::prev(behind);
      if (problem.offset < part.newBegin + part.size)
        faulty.emplace_back(part.find, &problem.message);
    }
    for (const auto& [find, message] : faulty) LeaveOut(finds_[find], *message);
    return faulty.empty();
  }

  // Leaves out what stands before the declaration of the encoding, and moves it.
  bool LeaveOutHead(const std::vector<Part>& parts) {
    std::size_t end = 0;  // of the declaration
    while (end < page::PageEncoding::kDeclarationReach &&
           !page::PageEncoding::Declared(page_.Bytes().substr(0, end)))
      ++end;
    bool some = false;
    for (Find& find : finds_) {
      if (!IsMade(find) || find.begin >= end) continue;
      LeaveOut(find, words::MovesEncoding());
      some = true;
    }
    if (!some && !parts.empty()) LeaveOutAll(words::MovesEncoding());
    return false;
  }

  const page::Page& page_;
  std::vector<Find> finds_;
  page::TextEdits edits_;
  std::string bytes_;
};

}  // namespace

Finds FindAll(const page::Page& page, const Mapping& mapping, const ObjectRef& office) {
  Finds all;
  page::NullSink sink;
  all.problems = page::Publish(page, sink);
  if (page::HasErrors(all.problems)) return all;
  const page::Inspection inspection = page::Inspect(page);
  const FieldCaptions captions(office);
  FoundTags tags = FindTags(page, inspection, mapping, captions);
  std::vector<Find> placeholders =
      FindPlaceholders(page, inspection, tags, mapping, captions, office);
  all.finds = std::move(tags.finds);
  std::ranges::move(placeholders, std::back_inserter(all.finds));
  std::ranges::stable_sort(all.finds, {}, &Find::begin);
  page::PlaceFinder places(page.Bytes(), page.Encoding());
  for (Find& find : all.finds) find.place = places.At(find.begin);
  return all;
}

Adopted Adopt(const page::Page& page, std::vector<Find> finds) {
  return Proof(page, std::move(finds)).Make();
}

}  // namespace kvo::adopt
