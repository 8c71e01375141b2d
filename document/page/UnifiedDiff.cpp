#include "document/page/UnifiedDiff.h"

#include <algorithm>
#include <vector>

namespace kvo::page {
namespace {

constexpr std::size_t kContext = 3;

// The lines of a text, each with its line end.
std::vector<std::string_view> LinesOf(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    const std::size_t size = end == std::string_view::npos ? text.size() : end + 1;
    lines.push_back(text.substr(0, size));
    text.remove_prefix(size);
  }
  return lines;
}

// Lines [begin, end) of the old page, and what takes their place.
struct Block {
  std::size_t begin = 0;
  std::size_t end = 0;
  std::string text;
  std::vector<std::string> added{};  // the lines of `text`
};

class Diff {
 public:
  Diff(std::string_view page, const TextEdits& edits) : page_(page), lines_(LinesOf(page)) {
    starts_.reserve(lines_.size());
    for (const std::string_view line : lines_)
      starts_.push_back(static_cast<std::size_t>(line.data() - page.data()));
    for (std::size_t first = 0; first < edits.size();) first = AddBlock(edits, first);
    for (Block& block : blocks_) {
      for (const std::string_view line : LinesOf(block.text)) block.added.emplace_back(line);
      Trim(block);
    }
    std::erase_if(blocks_, [](const Block& block) {
      return block.begin == block.end && block.added.empty();
    });
  }

  std::string Text(std::string_view file) const {
    std::string text;
    if (blocks_.empty()) return text;
    text.append("--- a/").append(file).append("\n+++ b/").append(file).append("\n");
    std::ptrdiff_t shift = 0;
    for (std::size_t first = 0; first < blocks_.size();) {
      std::size_t last = first;
      while (last + 1 < blocks_.size() &&
             blocks_[last + 1].begin - blocks_[last].end <= 2 * kContext)
        ++last;
      AppendHunk(first, last, shift, text);
      first = last + 1;
    }
    return text;
  }

 private:
  // The line that holds a place. The page's end belongs to the last line unless a line end is
  // before it.
  std::size_t LineAt(std::size_t place) const {
    if (place == page_.size() && (page_.empty() || page_.back() == '\n')) return lines_.size();
    const auto after = std::ranges::upper_bound(starts_, place);
    return static_cast<std::size_t>(after - starts_.begin()) - 1;
  }
  std::size_t StartOf(std::size_t line) const {
    return line < starts_.size() ? starts_[line] : page_.size();
  }

  // Adds a block for the edits from `first` that touch the same lines; returns the next edit.
  std::size_t AddBlock(const TextEdits& edits, std::size_t first) {
    Block block{LineAt(edits[first].begin), 0, {}};
    std::size_t next = first;
    std::size_t at = StartOf(block.begin);
    do {
      const TextEdit& edit = edits[next];
      block.text.append(page_.substr(at, edit.begin - at)).append(edit.bytes);
      at = edit.end;
      // The rest of the line in which the edit ends; a removed line end takes in the next line.
      block.end = std::min(LineAt(at) + 1, lines_.size());
      ++next;
    } while (next < edits.size() && LineAt(edits[next].begin) < block.end);
    block.text.append(page_.substr(at, StartOf(block.end) - at));
    blocks_.push_back(std::move(block));
    return next;
  }

  void Trim(Block& block) const {
    std::size_t front = 0;
    const auto same = [&](std::size_t old, std::size_t now) {
      return lines_[old] == block.added[now];
    };
    while (block.begin < block.end && front < block.added.size() && same(block.begin, front)) {
      ++block.begin;
      ++front;
    }
    block.added.erase(block.added.begin(),
                      block.added.begin() + static_cast<std::ptrdiff_t>(front));
    while (block.begin < block.end && !block.added.empty() &&
           same(block.end - 1, block.added.size() - 1)) {
      --block.end;
      block.added.pop_back();
    }
  }

  static std::string Range(std::size_t begin, std::size_t count) {
    // A range without lines is named by the line before it.
    std::string text = std::to_string(count == 0 ? begin : begin + 1);
    return count == 1 ? text : text + "," + std::to_string(count);
  }
  static void AppendLine(char sign, std::string_view line, std::string& text) {
    text += sign;
    text += line;
    if (!line.ends_with('\n')) text += "\n\\ No newline at end of file\n";
  }

  void AppendHunk(std::size_t first, std::size_t last, std::ptrdiff_t& shift,
                  std::string& text) const {
    const std::size_t begin = blocks_[first].begin - std::min(blocks_[first].begin, kContext);
    const std::size_t end = std::min(blocks_[last].end + kContext, lines_.size());
    std::ptrdiff_t grown = 0;
    for (std::size_t i = first; i <= last; ++i)
      grown += static_cast<std::ptrdiff_t>(blocks_[i].added.size()) -
               static_cast<std::ptrdiff_t>(blocks_[i].end - blocks_[i].begin);
    const auto moved = [](std::size_t value, std::ptrdiff_t by) {
      return static_cast<std::size_t>(static_cast<std::ptrdiff_t>(value) + by);
    };
    text.append("@@ -").append(Range(begin, end - begin)).append(" +");
    text.append(Range(moved(begin, shift), moved(end - begin, grown))).append(" @@\n");
    shift += grown;
    std::size_t line = begin;
    for (std::size_t i = first; i <= last; ++i) {
      while (line < blocks_[i].begin) AppendLine(' ', lines_[line++], text);
      while (line < blocks_[i].end) AppendLine('-', lines_[line++], text);
      for (const std::string& added : blocks_[i].added) AppendLine('+', added, text);
    }
    while (line < end) AppendLine(' ', lines_[line++], text);
  }

  std::string_view page_;
  std::vector<std::string_view> lines_;
  std::vector<std::size_t> starts_;
  std::vector<Block> blocks_;
};

}  // namespace

std::string UnifiedDiff(std::string_view file, std::string_view page, const TextEdits& edits) {
  return Diff(page, edits).Text(file);
}

}  // namespace kvo::page
