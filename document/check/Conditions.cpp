#include "document/check/Conditions.h"

#include <algorithm>
#include <vector>

#include "common/values/Ascii.h"

namespace kvo::check {
namespace {

constexpr std::size_t npos = std::string_view::npos;

struct Token {
  enum class Kind {
    field,       // #customer.NAME#
    text,        // in quotation marks
    word,        // a number, a name
    comparison,  // ==, &lt;, ...
    open,
    close,
    other,  // anything else, "&&" and "||" among them
  };
  Kind kind = Kind::other;
  std::size_t at = 0;
  std::size_t length = 1;
};
using Kind = Token::Kind;

// Longer ones first, so that they match first.
constexpr std::string_view kComparisons[] = {
    "===", "!==", "&gt;=", "&lt;=", "&gt;", "&lt;", "==", "!=", "<>", ">=", "<=", ">", "<", "="};

bool BelongsToWord(char c) {
  return IsLetter(c) || IsDigit(c) || c == '_' || c == '.' || static_cast<unsigned char>(c) >= 0x80;
}

// Returns the token at `at`. `after` is the kind of the token before: after a comparison, "-" is a
// sign.
Token TokenAt(std::string_view test, std::size_t at, Kind after) {
  const std::string_view rest = test.substr(at);
  const char c = rest.front();
  if (c == '#' || c == '\'' || c == '"') {
    const std::size_t end = rest.find(c, 1);
    // An unclosed token extends to the end.
    if (end == npos) return {Kind::other, at, rest.size()};
    return {c == '#' ? Kind::field : Kind::text, at, end + 1};
  }
  for (const std::string_view comparison : kComparisons)
    if (rest.starts_with(comparison)) return {Kind::comparison, at, comparison.size()};
  if (c == '(') return {Kind::open, at};
  if (c == ')') return {Kind::close, at};
  const std::size_t sign = c == '-' && after == Kind::comparison ? 1 : 0;
  const auto end =
      std::find_if_not(rest.begin() + static_cast<std::ptrdiff_t>(sign), rest.end(), BelongsToWord);
  const auto length = static_cast<std::size_t>(end - rest.begin());
  if (length > sign) return {Kind::word, at, length};
  return {Kind::other, at};
}

std::vector<Token> TokensOf(std::string_view test) {
  std::vector<Token> tokens;
  Kind before = Kind::other;
  for (std::size_t at = 0; at < test.size();) {
    if (std::string_view(" \t\r\n").find(test[at]) != npos) {
      ++at;
      continue;
    }
    tokens.push_back(TokenAt(test, at, before));
    before = tokens.back().kind;
    at += tokens.back().length;
  }
  return tokens;
}

bool IsOperand(Kind kind) {
  return kind == Kind::field || kind == Kind::text || kind == Kind::word;
}

}  // namespace

std::size_t PlaceOfMissingJoiner(std::string_view test) {
  const std::vector<Token> tokens = TokensOf(test);
  const auto kindAt = [&](std::size_t i) {
    return i < tokens.size() ? tokens[i].kind : Kind::other;
  };
  for (std::size_t i = 1; i < tokens.size(); ++i) {
    const Kind left = kindAt(i - 1);
    const Kind right = kindAt(i);
    const bool ends =
        left == Kind::close || (IsOperand(left) && i > 1 && kindAt(i - 2) == Kind::comparison);
    // Brackets after a word are a call.
    const bool begins = (right == Kind::open && left != Kind::word) ||
                        (IsOperand(right) && kindAt(i + 1) == Kind::comparison);
    if (ends && begins) return tokens[i].at;
  }
  return npos;
}

}  // namespace kvo::check
