#include "document/check/Mend.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace kvo::check {
namespace {

// Overlapping fixes wait for the next round; no page needs nearly so many.
constexpr int kMostRounds = 100;

// A page after several rounds of edits: parts of the first page, and what was written between them.
class EditedPage {
 public:
  explicit EditedPage(std::size_t size) : size_(size), parts_{{0, size, {}}} {}

  // Makes edits of the page as it is now.
  void Make(const page::TextEdits& edits) {
    for (auto edit = edits.rbegin(); edit != edits.rend(); ++edit) {
      const std::ptrdiff_t begin = PartAt(edit->begin);
      const std::ptrdiff_t end = PartAt(edit->end);  // dividing there leaves `begin` as it is
      parts_.erase(parts_.begin() + begin, parts_.begin() + end);
      if (!edit->bytes.empty()) parts_.insert(parts_.begin() + begin, {0, 0, edit->bytes});
    }
  }

  // Returns the edits that make the page as it is now of the first one.
  page::TextEdits Edits() const {
    page::TextEdits edits;
    std::size_t at = 0;
    std::string bytes;
    const auto upTo = [&](std::size_t begin) {
      if (begin != at || !bytes.empty()) edits.push_back({at, begin, std::exchange(bytes, {})});
    };
    for (const Part& part : parts_) {
      bytes += part.written;
      if (part.begin == part.end) continue;
      upTo(part.begin);
      at = part.end;
    }
    upTo(size_);
    return edits;
  }

 private:
  struct Part {
    std::size_t begin = 0;  // in the first page
    std::size_t end = 0;
    std::string written;  // instead of that
  };

  // Returns the index of the part that begins at this place of the page as it is now, dividing one
  // if need be.
  std::ptrdiff_t PartAt(std::size_t place) {
    for (std::size_t i = 0; i < parts_.size(); ++i) {
      Part& part = parts_[i];
      const std::size_t size = part.end - part.begin + part.written.size();
      if (place == 0) return static_cast<std::ptrdiff_t>(i);
      if (place >= size) {
        place -= size;
        continue;
      }
      Part rest = part;
      if (part.begin != part.end) {
        part.end = rest.begin = part.begin + place;
      } else {
        part.written.resize(place);
        rest.written.erase(0, place);
      }
      parts_.insert(parts_.begin() + static_cast<std::ptrdiff_t>(i) + 1, std::move(rest));
      return static_cast<std::ptrdiff_t>(i) + 1;
    }
    return static_cast<std::ptrdiff_t>(parts_.size());
  }

  std::size_t size_;
  std::vector<Part> parts_;
};

}  // namespace

Mended Mend(const page::Page& page, const std::function<page::Problems(const page::Page&)>& check) {
  Mended mended{{}, {}, check(page), std::string(page.Bytes())};
  EditedPage edited(page.Bytes().size());
  for (int round = 0; round < kMostRounds; ++round) {
    page::TextEdits edits;
    page::Problems fixed;
    for (const page::Problem& problem : mended.left)
      if (problem.fix && page::Join(edits, problem.fix->edits)) fixed.push_back(problem);
    if (fixed.empty()) break;
    edited.Make(edits);
    std::ranges::move(fixed, std::back_inserter(mended.fixed));
    mended.bytes = page::Applied(mended.bytes, edits);
    mended.left = check(page::Page(mended.bytes));
  }
  mended.edits = edited.Edits();
  return mended;
}

}  // namespace kvo::check
