#include "document/shop/Statement.h"

#include <algorithm>
#include <array>
#include <vector>

#include "common/values/Ascii.h"
#include "common/values/RuntimeError.h"

namespace kvo::shop {
namespace {

bool IsWordCharacter(char c) {
  return IsDigit(c) || IsLetter(c) || c == '_' || c == '$' || static_cast<unsigned char>(c) >= 0x80;
}

// The words of a statement outside brackets, texts, quoted names and comments, and where it ends.
struct Outline {
  std::vector<std::string_view> words;
  std::size_t end = 0;   // after its last character that is not a blank, comment or semicolon
  bool oneOnly = true;   // nothing follows a semicolon
  bool complete = true;  // every bracket, text, quoted name and comment is closed
};

class Outliner {
 public:
  explicit Outliner(std::string_view text) : text_(text) {}

  Outline Take() {
    bool ended = false;
    while (at_ < text_.size()) {
      const char c = text_[at_];
      if (c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v') {
        ++at_;
      } else if (text_.substr(at_, 2) == "--") {
        SkipTo("\n", 2, false);
      } else if (text_.substr(at_, 2) == "/*") {
        SkipTo("*/", 2, true);
      } else if (c == ';') {
        ended = depth_ == 0;
        outline_.complete &= ended;
        ++at_;
      } else {
        outline_.oneOnly &= !ended;
        TakeToken(c);
        if (!ended) outline_.end = std::min(at_, text_.size());
      }
    }
    outline_.complete &= depth_ == 0;
    return std::move(outline_);
  }

 private:
  void TakeToken(char c) {
    if (c == '\'' || c == '"' || c == '`') {
      SkipTo(text_.substr(at_, 1), 1, true);  // a doubled mark reads as two adjacent texts
    } else if (c == '[') {
      SkipTo("]", 1, true);
    } else if (c == '(') {
      ++depth_;
      ++at_;
    } else if (c == ')') {
      outline_.complete &= depth_ > 0;
      --depth_;
      ++at_;
    } else if (IsWordCharacter(c)) {
      TakeWord();
    } else {
      ++at_;
    }
  }

  void TakeWord() {
    const std::size_t start = at_;
    while (at_ < text_.size() && IsWordCharacter(text_[at_])) ++at_;
    const std::string_view word = text_.substr(start, at_ - start);
    if (word.starts_with('$') && word.ends_with('$')) {  // PostgreSQL's $tag$text$tag$
      at_ = start;
      SkipTo(word, word.size(), true);
      return;
    }
    // A name after a point is not a keyword.
    if (depth_ == 0 && (start == 0 || text_[start - 1] != '.')) outline_.words.push_back(word);
  }

  void SkipTo(std::string_view mark, std::size_t from, bool required) {
    const std::size_t end = text_.find(mark, at_ + from);
    outline_.complete &= end != std::string_view::npos || !required;
    at_ = end == std::string_view::npos ? text_.size() : end + mark.size();
  }

  std::string_view text_;
  std::size_t at_ = 0;
  int depth_ = 0;
  Outline outline_;
};

template <std::size_t N>
bool OneOf(std::string_view word, const std::array<std::string_view, N>& words) {
  return std::ranges::any_of(words, [&](auto each) { return EqualIgnoringCase(each, word); });
}

[[noreturn]] void Refuse(std::string_view text) {
  throw RuntimeError(ErrorNumber::invalidCall, "SELECT ...: " + std::string(text));
}

}  // namespace

Statement::Statement(std::string_view text) {
  constexpr std::array<std::string_view, 2> kStarts = {"select", "with"};
  constexpr std::array<std::string_view, 8> kWriting = {"insert",   "update", "delete", "merge",
                                                        "truncate", "into",   "call",   "exec"};
  constexpr std::array<std::string_view, 6> kEnding = {"limit", "offset",    "fetch",
                                                       "for",   "procedure", "lock"};
  const Outline outline = Outliner(text).Take();
  if (outline.words.empty() || !OneOf(outline.words.front(), kStarts) || !outline.oneOnly ||
      !outline.complete)
    Refuse(text);
  for (const std::string_view word : outline.words) {
    if (OneOf(word, kWriting)) Refuse(text);
    limited_ |= OneOf(word, kEnding);
    ordered_ |= EqualIgnoringCase(word, "order");
  }
  text_ = text.substr(0, outline.end);
}

std::string Statement::Page(Paging paging, std::int64_t first, std::int64_t count) const {
  if (paging == Paging::none) return text_;
  std::string page = limited_ ? "SELECT * FROM (\n" + text_ + "\n) kvo_source" : text_;
  const std::string from = std::to_string(first);
  const std::string records = std::to_string(count);
  if (paging == Paging::limit) return page + "\nLIMIT " + records + " OFFSET " + from;
  if (paging == Paging::orderOffsetFetch && (limited_ || !ordered_))
    page += "\nORDER BY (SELECT NULL)";
  return page + "\nOFFSET " + from + " ROWS FETCH NEXT " + records + " ROWS ONLY";
}

std::string Statement::Count() const {
  return "SELECT COUNT(*) FROM (\n" + text_ + "\n) kvo_source";
}

}  // namespace kvo::shop
