#include "document/design/Edits.h"

#include <algorithm>
#include <utility>

namespace kvo::design {
namespace {

// The new position of an old one; `behind` what was inserted there.
std::size_t After(const std::vector<Edit>& edits, std::size_t position, bool behind) {
  std::size_t moved = position;
  for (const Edit& edit : edits) {
    if (edit.begin > position || (edit.begin == position && edit.end == position && !behind)) break;
    if (edit.end <= position) {
      moved += edit.text.size() - (edit.end - edit.begin);
    } else {
      moved -= position - edit.begin;
      if (behind) moved += edit.text.size();
      break;
    }
  }
  return moved;
}

}  // namespace

void Edits::Replace(std::size_t begin, std::size_t end, std::u16string text) {
  if (begin == end && text.empty()) return;
  edits_.push_back({begin, end, std::move(text)});
}

std::optional<Change> Edits::Finish(std::size_t begin, std::size_t end) {
  std::ranges::stable_sort(edits_, {}, &Edit::begin);
  std::vector<Edit> joined;
  for (Edit& edit : edits_) {
    if (!joined.empty() && edit.begin < joined.back().end) {
      // Of two removals, one holds the other.
      joined.back().end = std::max(joined.back().end, edit.end);
      joined.back().text += edit.text;
    } else {
      joined.push_back(std::move(edit));
    }
  }
  if (joined.empty()) return std::nullopt;
  const bool closes =
      begin == end && std::ranges::any_of(joined, [&](const Edit& edit) {
        return edit.begin == begin && edit.end == begin && edit.text.starts_with(u"</");
      });
  Change change{std::move(joined), 0, 0};
  change.begin = After(change.edits, begin, !closes);
  change.end =
      begin == end ? change.begin : std::max(change.begin, After(change.edits, end, false));
  return change;
}

}  // namespace kvo::design
