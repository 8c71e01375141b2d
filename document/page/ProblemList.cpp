#include "document/page/ProblemList.h"

#include <algorithm>
#include <string>
#include <utility>

#include "common/text/Blocks.h"
#include "document/page/Utf8.h"

namespace kvo::page {
namespace {

// Shortens a name. Names are copied into every problem of a control and may be as long as the page.
std::string Beginning(std::string_view name) {
  constexpr std::size_t kMost = 100;
  if (name.size() <= kMost) return std::string(name);
  std::size_t end = kMost;  // do not cut a character in half
  while (end > 0 && (static_cast<unsigned char>(name[end]) & 0xC0U) == 0x80) --end;
  return std::string(name.substr(0, end)) + "...";
}

}  // namespace

Place PlaceFinder::At(std::size_t offset) {
  if (offset < at_) {
    at_ = std::min(offset, PageEncoding::Mark(page_));
    place_ = {};
  }
  SkipLines(offset);
  while (at_ < offset) {
    const std::size_t ascii = AsciiPrefix(page_.substr(at_, offset - at_));
    place_.column += ascii;
    at_ += ascii;
    if (at_ >= offset) break;
    ++place_.column;
    at_ += encoding_.CharacterLength(page_.substr(at_));
  }
  return place_;
}

// Goes to the start of the line that holds the offset. A line ends with LF, CR, or CR LF.
void PlaceFinder::SkipLines(std::size_t offset) {
  const char* const begin = page_.data();
  const char* const end = begin + std::min(offset, page_.size());
  Places<'\n', '\r'> ends(begin + at_, end);
  for (const char* at = ends.Next(); at != end; at = ends.Next()) {
    const auto next = static_cast<std::size_t>(at + 1 - begin);
    if (*at == '\r' && next < page_.size() && page_[next] == '\n') continue;
    ++place_.line;
    place_.column = 1;
    at_ = next;
  }
}

void ProblemList::Add(Range where, std::string_view rule, Subject subject, Message message,
                      Severity severity) {
  if (severity == Severity::error) ++errors_;
  problems_.push_back({severity,
                       rule,
                       {},
                       Beginning(subject.control),
                       Beginning(subject.id),
                       std::move(message),
                       where.begin,
                       0,
                       where.end});
}

Problems ProblemList::Take(std::string_view page, const PageEncoding& encoding) {
  std::stable_sort(problems_.begin(), problems_.end(),
                   [](const Problem& a, const Problem& b) { return a.offset < b.offset; });
  PlaceFinder places(page, encoding);
  for (Problem& problem : problems_) problem.place = places.At(problem.offset);
  errors_ = 0;
  return std::exchange(problems_, {});
}

}  // namespace kvo::page
