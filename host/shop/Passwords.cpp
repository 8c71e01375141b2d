#include "host/shop/Passwords.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "common/Ascii.h"

namespace kvo::shop {
namespace {

constexpr std::string_view kHidden = "***";
constexpr std::string_view kSchemeEnd = "://";
constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::size_t kNone = std::string_view::npos;

struct Range {
  std::size_t begin;
  std::size_t end;
};

bool IsBlank(char c) { return kBlanks.find(c) != kNone; }

// Bytes beyond ASCII count as letters.
bool IsWordCharacter(char c) {
  return IsDigit(c) || IsLetter(c) || c == '_' || static_cast<unsigned char>(c) >= 0x80;
}

std::size_t SkipBlanks(std::string_view text, std::size_t at) {
  while (at < text.size() && IsBlank(text[at])) ++at;
  return at;
}

bool EndsIgnoringCase(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && EqualIgnoringCase(text.substr(text.size() - end.size()), end);
}

bool NamesPassword(std::string_view key) {
  constexpr std::array<std::string_view, 5> kEnds = {"password", "passwd", "pwd", "pass",
                                                     "passphrase"};
  return std::ranges::any_of(kEnds, [&](auto end) { return EndsIgnoringCase(key, end); });
}

// Whether "key =" starts here.
bool KeyStarts(std::string_view text, std::size_t at) {
  const std::size_t start = at;
  while (at < text.size() && IsWordCharacter(text[at])) ++at;
  if (at == start) return false;
  at = SkipBlanks(text, at);
  return at < text.size() && text[at] == '=';
}

// The keys of PostgreSQL and MySQL are parted by blanks or "&"; those of ODBC and of connection
// strings that are unknown here by ";".
bool PartedByBlanks(std::string_view text) {
  return text.starts_with("postgresql://") || text.starts_with("postgres://") ||
         text.starts_with("mysql://");
}

// Behind the closing mark; at the end of the text when there is none. A mark is escaped by "\" or
// by standing twice.
std::size_t QuotedEnd(std::string_view text, std::size_t at, char mark, bool backslash) {
  for (; at < text.size(); ++at) {
    if (backslash && text[at] == '\\') {
      ++at;
    } else if (text[at] == mark) {
      if (at + 1 == text.size() || text[at + 1] != mark) return at + 1;
      ++at;
    }
  }
  return text.size();
}

std::size_t ValueEnd(std::string_view text, std::size_t at) {
  const bool byBlanks = PartedByBlanks(text);
  if (at < text.size()) {
    if (text[at] == '\'' || text[at] == '"') return QuotedEnd(text, at + 1, text[at], byBlanks);
    if (text[at] == '{') return QuotedEnd(text, at + 1, '}', false);
  }
  for (; at < text.size(); ++at) {
    if (!byBlanks) {
      if (text[at] == ';') return at;
    } else if (text[at] == '\\') {
      ++at;
    } else if (text[at] == '&') {
      if (KeyStarts(text, at + 1)) return at;
    } else if (IsBlank(text[at])) {
      const std::size_t next = SkipBlanks(text, at);
      if (next == text.size() || KeyStarts(text, next)) return at;
    }
  }
  return text.size();
}

std::vector<Range> FindPasswords(std::string_view text) {
  std::vector<Range> found;
  // Behind the user's name and ":", up to the last "@", because a password may hold one as well.
  // An address that lacks its scheme, or a part of it, is refused, but shown first.
  const std::size_t scheme = text.find(kSchemeEnd);
  const std::size_t colon = text.find(':', scheme == kNone ? 0 : scheme + kSchemeEnd.size());
  const std::size_t at = text.rfind('@');
  if (colon != kNone && at != kNone && colon < at) found.push_back({colon + 1, at});
  for (std::size_t equals = text.find('='); equals != kNone; equals = text.find('=', equals + 1)) {
    std::size_t keyEnd = equals;
    while (keyEnd > 0 && IsBlank(text[keyEnd - 1])) --keyEnd;
    std::size_t key = keyEnd;
    while (key > 0 && IsWordCharacter(text[key - 1])) --key;
    if (!NamesPassword(text.substr(key, keyEnd - key))) continue;
    const std::size_t value = SkipBlanks(text, equals + 1);
    const std::size_t end = ValueEnd(text, value);
    if (end > value) found.push_back({value, end});
    equals = std::max(equals, end - 1);
  }
  // Overlapping ones become one.
  std::ranges::sort(found, {}, &Range::begin);
  std::vector<Range> apart;
  for (const Range& range : found) {
    if (!apart.empty() && range.begin <= apart.back().end)
      apart.back().end = std::max(apart.back().end, range.end);
    else
      apart.push_back(range);
  }
  return apart;
}

int HexDigit(char c) {
  if (!IsHexDigit(c)) return -1;
  return IsDigit(c) ? c - '0' : LowerAscii(c) - 'a' + 10;
}

std::string PercentDecoded(std::string_view text) {
  std::string decoded;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '%' && i + 2 < text.size() && HexDigit(text[i + 1]) >= 0 &&
        HexDigit(text[i + 2]) >= 0) {
      decoded += static_cast<char>(HexDigit(text[i + 1]) * 16 + HexDigit(text[i + 2]));
      i += 2;
    } else {
      decoded += text[i];
    }
  }
  return decoded;
}

std::string WithoutQuotes(std::string_view text) {
  if (text.size() < 2) return std::string(text);
  const char last = text.front() == '{' ? '}' : text.front();
  if ((text.front() != '\'' && text.front() != '"' && text.front() != '{') || text.back() != last)
    return std::string(text);
  return std::string(text.substr(1, text.size() - 2));
}

std::string Unescaped(std::string_view text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && i + 1 < text.size()) ++i;
    plain += text[i];
  }
  return plain;
}

void ReplaceAll(std::string& text, std::string_view what, bool wholeWords) {
  if (what.empty() || what == kHidden) return;
  for (std::size_t at = text.find(what); at != kNone;) {
    const std::size_t end = at + what.size();
    const bool inside = wholeWords && ((at > 0 && IsWordCharacter(text[at - 1])) ||
                                       (end < text.size() && IsWordCharacter(text[end])));
    if (!inside) text.replace(at, what.size(), kHidden);
    at = text.find(what, at + (inside ? 1 : kHidden.size()));
  }
}

// A short password may be part of any word, so it is looked for as a word only.
constexpr std::size_t kShort = 4;

// A password as it stands, and as it reads without quotation marks and escapes.
std::vector<std::string> FormsOf(std::string_view password) {
  const std::string bare = WithoutQuotes(password);
  return {std::string(password), bare, PercentDecoded(bare), Unescaped(bare)};
}

void HideWords(std::string& message, std::string_view password) {
  for (std::size_t at = 0; at < password.size();) {
    std::size_t end = at;
    while (end < password.size() && IsWordCharacter(password[end])) ++end;
    ReplaceAll(message, password.substr(at, end - at), true);
    at = end + 1;
  }
}

}  // namespace

std::string WithoutPasswords(std::string_view connectionString) {
  std::string shown;
  std::size_t at = 0;
  for (const Range& range : FindPasswords(connectionString)) {
    shown += connectionString.substr(at, range.begin - at);
    shown += kHidden;
    at = range.end;
  }
  return shown.append(connectionString.substr(at));
}

std::vector<std::string> PasswordsOf(std::string_view connectionString) {
  std::vector<std::string> passwords;
  for (const Range& range : FindPasswords(connectionString))
    passwords.emplace_back(connectionString.substr(range.begin, range.end - range.begin));
  return passwords;
}

std::string MessageWithout(const std::vector<std::string>& passwords, std::string_view message) {
  std::string shown;
  for (const char c : message) {
    const bool blank = IsBlank(c);
    if (blank && (shown.empty() || shown.back() == ' ')) continue;
    shown += blank ? ' ' : c;
  }
  while (shown.ends_with(' ')) shown.pop_back();
  for (const std::string& password : passwords)
    for (const std::string& form : FormsOf(password)) ReplaceAll(shown, form, form.size() < kShort);
  for (const std::string& password : passwords)
    for (const std::string& form : FormsOf(password)) HideWords(shown, form);
  return shown;
}

}  // namespace kvo::shop
