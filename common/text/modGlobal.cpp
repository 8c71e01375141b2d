#include "common/text/modGlobal.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

#include "common/text/Replacing.h"
#include "common/values/Ascii.h"
#include "common/values/RuntimeError.h"

namespace kvo {
namespace {

constexpr std::string_view kCdataStart = "<![CDATA[";
constexpr std::string_view kLineBreak = "\r\n";
constexpr std::string_view kTokenPrefix = "kv:@";

struct Token {
  std::string_view token;
  std::string_view text;
};
constexpr std::array kTokens = {
    Token{"kv:@lt;", "<"},  Token{"kv:@gt;", ">"},        Token{"kv:@quot;", "\""},
    Token{"kv:@amp;", "&"}, Token{"kv:@br;", kLineBreak},
};

constexpr Replacement kLineBreakToken(kTokens.back().token);
static_assert(kTokens.back().text == kLineBreak);

// What stands for a character, by the character; most stand for themselves.
using Replacements = std::array<Replacement, 256>;

constexpr Replacements Themselves() {
  Replacements table;
  for (std::size_t i = 0; i < table.size(); ++i) {
    const char c = static_cast<char>(i);
    table[i] = Replacement({&c, 1});
  }
  return table;
}

constexpr Replacements kMarkupReplacements = [] {
  Replacements table = Themselves();
  for (const Token& token : kTokens)
    if (token.text.size() == 1)
      table[static_cast<unsigned char>(token.text[0])] = Replacement(token.token);
  return table;
}();

constexpr Replacements kEntityReplacements = [] {
  Replacements table = Themselves();
  table['<'] = Replacement("&lt;");
  table['>'] = Replacement("&gt;");
  table['"'] = Replacement("&quot;");
  return table;
}();

const Replacement& ReplacementOf(const Replacements& table, char c) {
  return table[static_cast<unsigned char>(c)];
}

using EntityCharacters = CharacterSet<'<', '>', '"'>;
// What the token form replaces, removes or joins.
using MarkupCharacters = CharacterSet<'<', '>', '"', '&', ']', '\r', '\n'>;

// Whether a pass that stops at the set's characters only meets all that the table replaces.
template <class Set>
constexpr bool StopsAtAll(const Replacements& table) {
  for (std::size_t i = 0; i < table.size(); ++i)
    if (table[i].size > 1 && !Set::Has(static_cast<char>(i))) return false;
  return true;
}
static_assert(StopsAtAll<EntityCharacters>(kEntityReplacements));
static_assert(StopsAtAll<MarkupCharacters>(kMarkupReplacements));

struct AmpersandFixer {
  static ReplacingAt Next(ReplacingAt at, const char* end) {
    static constexpr Replacement kEscaped("&amp;");
    static constexpr Replacement kRaw("&");
    const bool bare = IsBare(at.from, end);
    return {at.from + 1, Put(bare ? kEscaped : kRaw, at.to)};
  }
  static char* Settle(char* to) { return to; }

 private:
  // Whether the "&" is to be escaped: the first character that departs from "amp;" decides, and
  // there must be one.
  static bool IsBare(const char* ampersand, const char* end) {
    for (const char wanted : std::string_view("amp;")) {
      if (++ampersand == end) return false;  // the text ends before it departs: stays raw
      if (LowerAscii(*ampersand) != wanted) return true;
    }
    return false;
  }
};

struct EntityEncoder {
  static ReplacingAt Next(ReplacingAt at, const char* /*end*/) {
    return {at.from + 1, Put(ReplacementOf(kEntityReplacements, *at.from), at.to)};
  }
  static char* Settle(char* to) { return to; }
};

// The first pass of the token form, and the others over what that leaves. What may still be removed
// or joined is held back; a character without a meaning of its own settles it.
class MarkupTokenEncoder {
 public:
  ReplacingAt Next(ReplacingAt at, const char* end) {
    // Nearly always nothing is held back.
    if (brackets_ == 0 && !carriageReturn_) {
      const char* const start = at.from;
      at = PutRun(at, end);
      if (at.from != start) return at;
    }
    const char c = *at.from;
    if (std::string_view(at.from, end).starts_with(kCdataStart))
      return {at.from + kCdataStart.size(), at.to};
    ++at.from;
    if (c == ']') {
      if (brackets_ == 2)
        at.to = Emit(']', at.to);
      else
        ++brackets_;
    } else if (c == '>' && brackets_ == 2) {
      brackets_ = 0;
    } else {
      at.to = Emit(c, ReleaseBrackets(at.to));
    }
    return at;
  }

  char* Settle(char* to) { return ReleaseCarriageReturn(ReleaseBrackets(to)); }

 private:
  static bool Begins(const char* from, const char* end, std::string_view pair) {
    return *from == pair[0] && end - from > 1 && from[1] == pair[1];
  }

  // Replaces what may be replaced without looking further than one character ahead.
  static ReplacingAt PutRun(ReplacingAt at, const char* end) {
    for (std::size_t i = 0; i < kLongestRun && at.from != end; ++i, ++at.from) {
      const Replacement& replacement = ReplacementOf(kMarkupReplacements, *at.from);
      if (replacement.size > 1 && !Begins(at.from, end, kCdataStart.substr(0, 2))) {
        at.to = Put(replacement, at.to);
      } else if (Begins(at.from, end, kLineBreak)) {
        at.to = Put(kLineBreakToken, at.to);
        ++at.from;
      } else {
        break;
      }
    }
    return at;
  }

  char* ReleaseBrackets(char* to) {
    for (; brackets_ > 0; --brackets_) to = Emit(']', to);
    return to;
  }
  char* ReleaseCarriageReturn(char* to) {
    if (carriageReturn_) *to++ = '\r';
    carriageReturn_ = false;
    return to;
  }
  char* Emit(char c, char* to) {
    if (c == '\n' && carriageReturn_) {
      carriageReturn_ = false;
      return Put(kLineBreakToken, to);
    }
    to = ReleaseCarriageReturn(to);
    carriageReturn_ = c == '\r';
    return carriageReturn_ ? to : Put(ReplacementOf(kMarkupReplacements, c), to);
  }

  int brackets_ = 0;  // "]" held back, at most the two that may begin "]]>"
  bool carriageReturn_ = false;
};

char UpperAscii(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; }

std::uint8_t Component(int value) { return static_cast<std::uint8_t>(std::min(value, 255)); }

bool ParseHexColor(std::string_view text, std::array<std::uint8_t, 3>& parts) {
  if (text.size() != 7 || text[0] != '#') return false;
  if (!std::ranges::all_of(text.substr(1), IsHexDigit)) return false;
  for (std::size_t i = 0; i < parts.size(); ++i)
    parts[i] = Component(HexToInt(text.substr(1 + 2 * i, 2)));
  return true;
}

bool ParseRgbColor(std::string_view text, std::array<std::uint8_t, 3>& parts) {
  constexpr std::string_view kStart = "rgb(";
  if (!EqualIgnoringCase(text.substr(0, kStart.size()), kStart)) return false;
  text.remove_prefix(kStart.size());
  for (std::size_t i = 0; i < parts.size(); ++i) {
    int value = 0;
    std::size_t digits = 0;
    for (; digits < text.size() && IsDigit(text[digits]); ++digits)
      if (digits < 3) value = value * 10 + (text[digits] - '0');
    if (digits < 1 || digits > 3) return false;
    parts[i] = Component(value);
    text.remove_prefix(digits);
    if (!text.starts_with(i + 1 < parts.size() ? ',' : ')')) return false;
    text.remove_prefix(1);
  }
  return text.empty();
}

}  // namespace

void AppendFixAmpersands(std::string& out, std::string_view text) {
  const std::size_t clean = std::min(text.find('&'), text.size());
  out += text.substr(0, clean);
  if (clean < text.size())
    AppendReplacing<CharacterSet<'&'>>(out, text.substr(clean), AmpersandFixer());
}

std::string FixAmpersands(std::string_view text) {
  std::string out;
  AppendFixAmpersands(out, text);
  return out;
}

void AppendEncodeMarkupTokens(std::string& out, std::string_view text) {
  AppendReplacing<MarkupCharacters>(out, text, MarkupTokenEncoder());
}

std::string EncodeMarkupTokens(std::string_view text) {
  std::string out;
  AppendEncodeMarkupTokens(out, text);
  return out;
}

void AppendDecodeMarkupTokens(std::string& out, std::string_view text) {
  // The characters that tokens become never belong to another token, so one pass is enough. Of a
  // token's beginning the last character is the one that other texts hardly have.
  constexpr std::size_t kPrefix = kTokenPrefix.size();
  std::size_t copied = 0;
  for (std::size_t at = text.find(kTokenPrefix.back()); at != std::string_view::npos;
       at = text.find(kTokenPrefix.back(), at)) {
    ++at;
    if (at - copied < kPrefix) continue;
    const std::size_t begin = at - kPrefix;
    const std::string_view rest = text.substr(begin);
    const auto* token = std::ranges::find_if(
        kTokens, [&](const Token& candidate) { return rest.starts_with(candidate.token); });
    if (token == kTokens.end()) continue;
    out += text.substr(copied, begin - copied);
    out += token->text;
    at = copied = begin + token->token.size();
  }
  out += text.substr(copied);
}

std::string DecodeMarkupTokens(std::string_view text) {
  std::string out;
  AppendDecodeMarkupTokens(out, text);
  return out;
}

void AppendEncodeHtmlEntities(std::string& out, std::string_view text) {
  AppendReplacing<EntityCharacters>(out, text, EntityEncoder());
}

std::string EncodeHtmlEntities(std::string_view text) {
  std::string out;
  AppendEncodeHtmlEntities(out, text);
  return out;
}

std::string TrimCrLf(std::string text) {
  std::string_view rest = text;
  for (;;) {
    if (rest.starts_with(' ')) {
      rest.remove_prefix(1);
    } else if (rest.starts_with(kLineBreak)) {
      rest.remove_prefix(2);
    } else {
      break;
    }
  }
  for (;;) {
    if (rest.ends_with(' ')) {
      rest.remove_suffix(1);
    } else if (rest.ends_with(kLineBreak)) {
      rest.remove_suffix(2);
    } else {
      break;
    }
  }
  if (rest.size() == text.size()) return text;
  return std::string(rest);
}

Variant TrimCrLf(Variant text) {
  if (text.IsEmpty()) return text;
  return TrimCrLf(ToText(std::move(text)));
}

std::string ColorToHex(ColorNumber color) {
  const int blue = color / 65536;
  const int rest = color - blue * 65536;
  const int green = rest / 256;
  const int red = rest - green * 256;
  return HexPad2(static_cast<std::int16_t>(red)) + HexPad2(static_cast<std::int16_t>(green)) +
         HexPad2(static_cast<std::int16_t>(blue));
}

std::string HexPad2(std::int16_t number) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text;
  for (auto bits = static_cast<std::uint16_t>(number); bits != 0; bits >>= 4)
    text.insert(text.begin(), kDigits[bits & 15U]);
  if (text.size() < 2) text.insert(0, 2 - text.size(), '0');
  return text;
}

std::int16_t HexToInt(std::string_view text) {
  // From the last position to the first, with the power of 16 that each position has.
  std::int32_t result = 0;
  std::int64_t power = 1;
  for (std::size_t i = text.size(); i-- > 0; power *= 16) {
    const char c = UpperAscii(text[i]);
    const int code = static_cast<unsigned char>(c);
    if (code < 65 && (c < '0' || c > '9'))
      throw RuntimeError(ErrorNumber::typeMismatch, '"' + std::string(1, text[i]) + '"');
    const int digit = code >= 65 ? code - 55 : c - '0';  // no upper end: "Z" is 35
    constexpr std::int64_t kMost = std::numeric_limits<std::int16_t>::max();
    if (power > kMost || result + digit * power > kMost) throw RuntimeError(ErrorNumber::overflow);
    result += static_cast<std::int32_t>(digit * power);
  }
  return static_cast<std::int16_t>(result);
}

bool ParseColor(std::string_view text, std::uint8_t& red, std::uint8_t& green, std::uint8_t& blue) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  std::array<std::uint8_t, 3> parts{};
  const bool parsed = ParseHexColor(text, parts) || ParseRgbColor(text, parts);
  if (!parsed) parts.fill(255);
  red = parts[0];
  green = parts[1];
  blue = parts[2];
  return parsed;
}

}  // namespace kvo
