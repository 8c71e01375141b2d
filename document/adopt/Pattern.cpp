#include "document/adopt/Pattern.h"

#include <algorithm>
#include <optional>
#include <span>

#include "common/values/Ascii.h"
#include "document/page/ElementWriter.h"
#include "document/page/Scanner.h"

namespace kvo::adopt {
namespace {

using page::IsHtmlSpace;
using page::npos;

constexpr std::size_t kLongestName = 100;
constexpr std::size_t kLongestSpace = 100;
constexpr std::size_t kLongestStatement = 300;

// How other systems write a placeholder. A longer mark comes before one that it begins with.
enum class Names { all, upperCase, noEscapes };
struct Style {
  std::string_view pattern;
  Names names = Names::all;
};
constexpr Style kStyles[] = {{"{{{ {name} }}}"},
                             {"{{ {name} }}"},
                             {"*|{name}|*"},
                             {"<%= {name} %>"},
                             {"${{name}}"},
                             {"%%{name}%%"},
                             {"%{name}%", Names::noEscapes},
                             {"[{name}]", Names::upperCase}};

// What else such systems write between their marks.
struct Statement {
  std::string_view begin;
  std::string_view end;
};
constexpr Statement kStatements[] = {{"{{", "}}"}, {"{%", "%}"}, {"*|", "|*"}, {"<%", "%>"}};

bool BeginsName(char c) { return IsLetter(c) || c == '_' || static_cast<unsigned char>(c) >= 0x80; }
bool ContinuesName(char c) { return BeginsName(c) || IsDigit(c) || c == '.' || c == '-'; }
bool IsWord(char c) { return BeginsName(c) || IsDigit(c); }

// Whether a name may be one in this style: in "[NAME]" and "%name%" other things look alike.
bool Fits(Names names, std::string_view name) {
  const auto isLower = [](char c) { return c >= 'a' && c <= 'z'; };
  if (names == Names::upperCase) return name.size() > 1 && std::ranges::none_of(name, isLower);
  return names == Names::all || !(name.size() == 2 && std::ranges::all_of(name, IsHexDigit));
}

}  // namespace

bool IsPattern(std::string_view pattern) {
  const std::size_t hole = pattern.find(kNameHole);
  if (hole == 0 || (hole != npos && pattern.find(kNameHole, hole + 1) != npos)) return false;
  return pattern.size() - (hole == npos ? 0 : kNameHole.size()) >= 2 &&
         !IsHtmlSpace(pattern.front());
}

struct PlaceholderFinder::Compiled {
  struct Piece {
    enum class Kind { bytes, space, name };
    Kind kind = Kind::bytes;
    std::string bytes{};
    bool atLeastOne = false;  // of space
  };
  std::vector<Piece> pieces;
  const PlaceholderRule* rule = nullptr;  // nullptr for a common style
  Names names = Names::all;

  // White space is free between a word and a mark of two and more characters.
  static Compiled Of(std::string_view pattern, const page::PageEncoding& encoding,
                     bool& encodable) {
    Compiled compiled;
    std::size_t at = 0;
    bool word = false;
    std::size_t mark = 0;  // the size of the mark before
    bool space = false;
    const auto addSpace = [&](bool nextWord, std::size_t nextMark) {
      if (compiled.pieces.empty()) return;
      const bool free = (word && !nextWord && nextMark > 1) || (!word && nextWord && mark > 1);
      if (free || space) compiled.pieces.push_back({Piece::Kind::space, {}, space && !free});
      space = false;
    };
    while (at < pattern.size()) {
      if (IsHtmlSpace(pattern[at])) {
        space = true;
        ++at;
        continue;
      }
      if (pattern.substr(at).starts_with(kNameHole)) {
        addSpace(true, 0);
        compiled.pieces.push_back({Piece::Kind::name});
        at += kNameHole.size();
        word = true;
        continue;
      }
      const std::size_t begin = at;
      const bool isWord = IsWord(pattern[at]);
      while (at < pattern.size() && !IsHtmlSpace(pattern[at]) && IsWord(pattern[at]) == isWord &&
             !pattern.substr(at).starts_with(kNameHole))
        ++at;
      addSpace(isWord, isWord ? 0 : at - begin);
      Piece piece;
      if (page::AppendText(pattern.substr(begin, at - begin), encoding, piece.bytes))
        encodable = false;
      compiled.pieces.push_back(std::move(piece));
      word = isWord;
      mark = isWord ? 0 : at - begin;
    }
    return compiled;
  }

  struct Match {
    std::size_t end;
    std::string_view name;
  };
  std::optional<Match> MatchAt(std::string_view page, std::size_t at) const {
    std::string_view name;
    for (const Piece& piece : pieces) {
      if (piece.kind == Piece::Kind::bytes) {
        if (!EqualIgnoringCase(page.substr(at, piece.bytes.size()), piece.bytes))
          return std::nullopt;
        at += piece.bytes.size();
        continue;
      }
      const std::size_t begin = at;
      const bool isName = piece.kind == Piece::Kind::name;
      const std::size_t most = std::min(page.size(), at + (isName ? kLongestName : kLongestSpace));
      if (isName && (at == most || !BeginsName(page[at]))) return std::nullopt;
      while (at < most && (isName ? ContinuesName(page[at]) : IsHtmlSpace(page[at]))) ++at;
      if (piece.atLeastOne && at == begin) return std::nullopt;
      if (isName) name = page.substr(begin, at - begin);
    }
    return Match{at, name};
  }
};

PlaceholderFinder::~PlaceholderFinder() = default;

PlaceholderFinder::PlaceholderFinder(const Mapping& mapping, const page::PageEncoding& encoding)
    : encoding_(encoding), byFirst_(0x100) {
  const auto add = [&](std::string_view pattern, const PlaceholderRule* rule, Names names) {
    bool encodable = true;
    Compiled compiled = Compiled::Of(pattern, encoding, encodable);
    if (!encodable) return;  // cannot stand in the page
    compiled.rule = rule;
    compiled.names = names;
    const auto first = static_cast<unsigned char>(LowerAscii(compiled.pieces.front().bytes[0]));
    byFirst_[first].push_back(patterns_.size());
    patterns_.push_back(std::move(compiled));
  };
  for (const PlaceholderRule& rule : mapping.placeholders)
    for (const std::string& pattern : rule.patterns) add(pattern, &rule, Names::all);
  for (const Style& style : kStyles) add(style.pattern, nullptr, style.names);
}

std::vector<Placeholder> PlaceholderFinder::Find(std::string_view page) const {
  std::vector<Placeholder> found;
  for (std::size_t at = 0; at < page.size();) {
    std::optional<Placeholder> best;
    for (const std::size_t number : byFirst_[static_cast<unsigned char>(LowerAscii(page[at]))]) {
      const Compiled& pattern = patterns_[number];
      const auto match = pattern.MatchAt(page, at);
      if (!match) continue;
      Placeholder placeholder{at, match->end, {}};
      encoding_.Decode(match->name, placeholder.name);
      if (pattern.rule != nullptr) {
        placeholder.target = pattern.rule->target ? &*pattern.rule->target : nullptr;
        const auto field = pattern.rule->fields.find(Lowered(placeholder.name));
        if (field != pattern.rule->fields.end()) placeholder.target = &field->second;
        // "[endif]" is no placeholder; the common styles tell.
        if (placeholder.target == nullptr && pattern.pieces.front().bytes.size() == 1) continue;
      } else if (!Fits(pattern.names, placeholder.name)) {
        continue;
      }
      // What the mapping says comes first, then the longer one.
      const auto rank = [](const Placeholder& each) {
        return std::pair(each.target != nullptr, each.end);
      };
      if (!best || rank(placeholder) > rank(*best)) best = std::move(placeholder);
    }
    for (const Statement& statement : kStatements) {
      if (best || !page.substr(at).starts_with(statement.begin)) continue;
      const std::size_t end =
          page.substr(at, kLongestStatement).find(statement.end, statement.begin.size());
      if (end == npos) continue;
      best = Placeholder{at, at + end + statement.end.size(), {}};
      best->statement = true;
    }
    at = best ? best->end : at + 1;
    if (best) found.push_back(std::move(*best));
  }
  return found;
}

}  // namespace kvo::adopt
