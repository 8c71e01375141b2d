#include "document/compare/Skeleton.h"

#include <algorithm>
#include <set>

#include "common/values/Ascii.h"

namespace kvo::compare {
namespace {

constexpr std::string_view kWord = "KVO";
constexpr std::string_view kMarkers = "<|=>";

// Reads the digits at the start of a text, at most nine, and removes them.
std::size_t TakeDigits(std::string_view& text) {
  std::size_t number = 0;
  for (int count = 0; count < 9 && !text.empty() && IsDigit(text.front()); ++count) {
    number = number * 10 + static_cast<std::size_t>(text.front() - '0');
    text.remove_prefix(1);
  }
  return number;
}

// Calls `use` with each line, its end included.
template <class Use>
void ForEachLine(std::string_view text, Use use) {
  while (!text.empty()) {
    const std::size_t size = std::min(text.find('\n'), text.size() - 1) + 1;
    use(text.substr(0, size));
    text.remove_prefix(size);
  }
}

// Returns how often the marker's character stands at the start of the line; 0 without one.
std::size_t MarkerSize(std::string_view line) {
  if (line.empty() || kMarkers.find(line.front()) == std::string_view::npos) return 0;
  return std::min(line.find_first_not_of(line.front()), line.size());
}

}  // namespace

Words::Words(std::span<const std::string_view> texts) {
  std::set<std::size_t> taken;
  for (const std::string_view text : texts)
    for (std::size_t at = text.find(kWord); at != std::string_view::npos;
         at = text.find(kWord, at + 1)) {
      std::string_view rest = text.substr(at + kWord.size());
      taken.insert(TakeDigits(rest));
    }
  std::size_t number = 1;
  while (taken.contains(number)) ++number;
  begin_ = std::string(kWord) + std::to_string(number) + '_';
}

std::string Words::Of(const Word& word) const {
  return begin_ + std::to_string(word.control) + static_cast<char>(word.which);
}

std::vector<Words::Part> Words::Divide(std::string_view text) const {
  std::vector<Part> parts;
  for (;;) {
    const std::size_t at = text.find(begin_);
    parts.push_back({text.substr(0, at), std::nullopt});
    if (at == std::string_view::npos) return parts;
    text.remove_prefix(at + begin_.size());
    const std::size_t control = TakeDigits(text);
    if (text.empty()) return parts;
    parts.back().word = {control, static_cast<Which>(text.front())};
    text.remove_prefix(1);
  }
}

std::vector<Region> DivideAtMarkers(std::string_view merged, std::size_t markerSize) {
  std::vector<Region> regions(1);
  std::string* part = &regions.back().text;
  ForEachLine(merged, [&](std::string_view line) {
    if (MarkerSize(line) != markerSize) {
      *part += line;
      return;
    }
    if (line.front() == '<') {
      regions.emplace_back().conflict = true;
      regions.back().oursMarker = line;
      part = &regions.back().ours;
    } else if (line.front() == '|') {
      regions.back().baseMarker = line;
      part = &regions.back().base;
    } else if (line.front() == '=') {
      regions.back().theirsMarker = line;
      part = &regions.back().theirs;
    } else {
      regions.back().endMarker = line;
      part = &regions.emplace_back().text;
    }
  });
  return regions;
}

std::size_t UnusedMarkerSize(std::span<const std::string_view> texts) {
  std::set<std::size_t> taken;
  for (const std::string_view text : texts)
    ForEachLine(text, [&taken](std::string_view line) { taken.insert(MarkerSize(line)); });
  std::size_t size = 16;
  while (taken.contains(size)) ++size;
  return size;
}

bool HoldsMarkers(std::string_view text, std::size_t markerSize) {
  bool begin = false;
  bool end = false;
  ForEachLine(text, [&](std::string_view line) {
    const std::size_t size = MarkerSize(line);
    if (size < std::min<std::size_t>(markerSize, 7)) return;
    begin = begin || line.front() == '<';
    end = end || (begin && line.front() == '>');
  });
  return end;
}

}  // namespace kvo::compare
