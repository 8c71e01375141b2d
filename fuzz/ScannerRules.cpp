#include "fuzz/ScannerRules.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "common/values/Ascii.h"
#include "document/page/Scanner.h"

namespace kvo::page {
namespace {

using Found = std::vector<std::pair<Scanner::Kind, std::size_t>>;

// Implements the HTML tokenizer state by state, as far as it separates tags from comments.
class PlainReading {
 public:
  explicit PlainReading(std::string_view text) : text_(text) {}

  Found Read() {
    while (!AtEnd()) {
      if (text_[at_] != '<')
        ++at_;
      else
        ReadMarkup();
    }
    return found_;
  }

 private:
  bool AtEnd() const { return at_ >= text_.size(); }
  bool Has(std::string_view wanted) const {
    return text_.substr(at_).substr(0, wanted.size()) == wanted;
  }
  bool IsSpace() const { return !AtEnd() && IsHtmlSpace(text_[at_]); }
  bool IsLetterAt(std::size_t at) const {
    if (at >= text_.size()) return false;
    const char c = LowerAscii(text_[at]);
    return c >= 'a' && c <= 'z';
  }
  void SkipPast(std::string_view end) {
    const std::size_t found = text_.find(end, at_);
    at_ = found == std::string_view::npos ? text_.size() : found + end.size();
  }
  bool Report(Scanner::Kind kind, std::string_view start) {
    if (!Has(start)) return false;
    found_.emplace_back(kind, at_);
    at_ += start.size();
    return true;
  }
  // Whether "<name" or "</name" is here, followed by the end of a name.
  bool HasTag(std::string_view start, std::string_view name) const {
    if (!Has(start)) return false;
    const std::string_view rest = text_.substr(at_ + start.size());
    return EqualIgnoringCase(rest.substr(0, name.size()), name) && rest.size() > name.size() &&
           (IsHtmlSpace(rest[name.size()]) || rest[name.size()] == '/' || rest[name.size()] == '>');
  }

  void ReadMarkup() {
    if (HasTag("<", "object")) {
      found_.emplace_back(Scanner::Kind::object, at_);
      at_ += 7;
    } else if (IsLetterAt(at_ + 1)) {
      ++at_;
      ReadTag(true);
    } else if (Has("</") && IsLetterAt(at_ + 2)) {
      at_ += 2;
      ReadTag(false);
    } else if (Has("<!--")) {
      if (Report(Scanner::Kind::spanStart, kSpanStart) || Report(Scanner::Kind::spanEnd, kSpanEnd))
        return;
      at_ += 4;
      ReadComment();
    } else if (Has("<![CDATA[") && svg_ + math_ > 0) {
      at_ += 9;
      SkipPast("]]>");
    } else if (Has("</") || Has("<!") || Has("<?")) {
      at_ += 2;
      SkipPast(">");
    } else {
      ++at_;
    }
  }

  void ReadTag(bool start) {
    const std::size_t begin = at_;
    while (!AtEnd() && !IsSpace() && text_[at_] != '/' && text_[at_] != '>') ++at_;
    const std::string_view name = text_.substr(begin, at_ - begin);
    while (!AtEnd() && text_[at_] != '>') ReadAttribute();
    if (AtEnd()) return;
    ++at_;
    const bool closesItself = text_[at_ - 2] == '/';
    for (const auto& [element, depth] : {std::pair("svg", &svg_), std::pair("math", &math_)})
      if (EqualIgnoringCase(name, element)) *depth += start ? (closesItself ? 0 : 1) : -1;
    svg_ = std::max(svg_, 0);
    math_ = std::max(math_, 0);
    if (!start || (closesItself && svg_ + math_ > 0)) return;
    if (EqualIgnoringCase(name, "script")) return ReadScript();
    for (const std::string_view raw :
         {"style", "textarea", "title", "noframes", "noembed", "iframe", "xmp", "plaintext"})
      if (EqualIgnoringCase(name, raw))
        while (!AtEnd() && (raw == "plaintext" || !HasTag("</", raw))) ++at_;
  }

  // Reads an attribute and stops after it, or at the tag's ">".
  void ReadAttribute() {
    while (IsSpace() || Has("/")) ++at_;
    if (AtEnd() || Has(">")) return;
    ++at_;  // the first character of a name may be anything
    while (!AtEnd() && !IsSpace() && !Has("/") && !Has(">") && !Has("=")) ++at_;
    while (IsSpace()) ++at_;
    if (!Has("=")) return;
    ++at_;
    while (IsSpace()) ++at_;
    if (Has("\"") || Has("'")) {
      const char quote = text_[at_++];
      while (!AtEnd() && text_[at_] != quote) ++at_;
      if (!AtEnd()) ++at_;
      return;
    }
    while (!AtEnd() && !IsSpace() && !Has(">")) ++at_;
  }

  // Starts after "<!--".
  void ReadComment() {
    if (Has(">")) return SkipPast(">");
    if (Has("->")) return SkipPast("->");
    std::size_t dashes = 0;
    for (; !AtEnd(); ++at_) {
      if (text_[at_] == '-') {
        ++dashes;
        continue;
      }
      if (dashes >= 2 && (Has(">") || Has("!>"))) return SkipPast(">");
      dashes = 0;
    }
  }

  void ReadScript() {
    enum { plain, escaped, doubleEscaped } state = plain;
    std::size_t dashes = 0;
    while (!AtEnd()) {
      if (state == plain) {
        if (HasTag("</", "script")) return;
        if (Has("<!--")) {
          state = escaped;
          at_ += 4;
          dashes = 2;
        } else {
          ++at_;
        }
        continue;
      }
      if (Has(">") && dashes >= 2) {
        state = plain;
      } else if (HasTag("</", "script")) {
        if (state == escaped) return;
        state = escaped;
      } else if (state == escaped && HasTag("<", "script")) {
        state = doubleEscaped;
      }
      dashes = Has("-") ? dashes + 1 : 0;
      ++at_;
    }
  }

  std::string_view text_;
  std::size_t at_ = 0;
  int svg_ = 0;  // open elements
  int math_ = 0;
  Found found_;
};

Found Scanned(const std::string& page) {
  Found found;
  Scanner scanner(page);
  for (Scanner::Kind kind; (kind = scanner.Next()) != Scanner::Kind::end;) {
    found.emplace_back(kind, scanner.Position());
    const std::size_t length = kind == Scanner::Kind::object      ? 7
                               : kind == Scanner::Kind::spanStart ? kSpanStart.size()
                                                                  : kSpanEnd.size();
    scanner.SeekTo(scanner.Position() + length);
  }
  return found;
}

std::string Listed(const Found& found) {
  std::string text;
  for (const auto& [kind, position] : found)
    text += " " + std::to_string(static_cast<int>(kind)) + "@" + std::to_string(position);
  return text.empty() ? " nothing" : text;
}

}  // namespace

std::string ScannerDifference(const std::string& page) {
  const Found expected = PlainReading(page).Read();
  const Found found = Scanned(page);
  return found == expected ? "" : "expected" + Listed(expected) + ", found" + Listed(found);
}

}  // namespace kvo::page
