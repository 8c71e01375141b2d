#include "common/text/modGlobal.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <initializer_list>
#include <limits>

#include "common/text/Blocks.h"
#include "common/values/Ascii.h"
#include "common/values/RuntimeError.h"

namespace kvo {
namespace {

constexpr std::string_view kCdataStart = "<![CDATA[";
constexpr std::string_view kCdataEnd = "]]>";
constexpr std::string_view kLineBreak = "\r\n";

struct Token {
  std::string_view text;
  std::string_view token;
};
constexpr std::array kTokens = {
    Token{"<", "kv:@lt;"},  Token{">", "kv:@gt;"},        Token{"\"", "kv:@quot;"},
    Token{"&", "kv:@amp;"}, Token{kLineBreak, "kv:@br;"},
};
constexpr std::string_view kTokenPrefix = "kv:@";

constexpr std::array kEntities = {Token{"<", "&lt;"}, Token{">", "&gt;"}, Token{"\"", "&quot;"}};

// The replacement for a character, in a block of fixed size that is copied without a loop.
struct Replacement {
  constexpr Replacement() = default;
  constexpr explicit Replacement(std::string_view of) : size(static_cast<std::uint8_t>(of.size())) {
    std::copy(of.begin(), of.end(), text.begin());
  }

  std::array<char, 15> text{};
  std::uint8_t size = 0;
};

// Indexed by the first character of the replaced text.
class Replacements {
 public:
  template <std::size_t size>
  constexpr explicit Replacements(const std::array<Token, size>& tokens) {
    for (const Token& token : tokens)
      table_[static_cast<unsigned char>(token.text[0])] = Replacement(token.token);
  }
  const Replacement& operator[](char c) const { return table_[static_cast<unsigned char>(c)]; }

 private:
  std::array<Replacement, 0x80> table_;
};

// Replaces some characters and copies all others, in one pass. `next` moves past such a character,
// and past those that it is replaced together with, and returns the replacement.
template <char... replaced, class Next>
void AppendReplacing(std::string& out, std::string_view text, Next next) {
  constexpr std::size_t kChunk = 512;
  char gathered[kChunk * sizeof(Replacement)];  // deliberately not initialised
  const char* at = text.data();
  const char* const end = at + text.size();
  while (at < end) {
    const char* const chunk =
        at + std::min<std::size_t>(kChunk, static_cast<std::size_t>(end - at));
    char* to = gathered;
    while (at < chunk) {
      const std::size_t plain = CopyUpTo<replaced...>(at, static_cast<std::size_t>(chunk - at), to);
      at += plain;
      to += plain;
      while (at < chunk && IsAny<replaced...>(*at)) {
        const Replacement& replacement = next(at, end);
        std::memcpy(to, &replacement, sizeof replacement);
        to += replacement.size;
      }
    }
    out.append(gathered, to);
  }
}

// Whether the "&" must be escaped: it must when a character behind it departs from "amp;".
bool IsBare(const char* ampersand, const char* end) {
  for (const char wanted : std::string_view("amp;")) {
    if (++ampersand == end) return false;  // the text ends first: stays raw
    if (LowerAscii(*ampersand) != wanted) return true;
  }
  return false;
}

bool Holds(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

std::string Without(std::string_view text, std::string_view removed) {
  std::string out;
  for (;;) {
    const std::size_t end = text.find(removed);
    out += text.substr(0, end);
    if (end == std::string_view::npos) return out;
    text.remove_prefix(end + removed.size());
  }
}

char UpperAscii(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; }

std::uint8_t Component(int value) { return static_cast<std::uint8_t>(std::min(value, 255)); }

bool ParseHexColor(std::string_view text, std::array<std::uint8_t, 3>& parts) {
  if (text.size() != 7 || text[0] != '#') return false;
  if (!std::all_of(text.begin() + 1, text.end(), IsHexDigit)) return false;
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
  AppendReplacing<'&'>(out, text, [](const char*& at, const char* end) -> const Replacement& {
    static constexpr Replacement kEscaped("&amp;");
    static constexpr Replacement kRaw("&");
    return IsBare(at++, end) ? kEscaped : kRaw;
  });
}

std::string FixAmpersands(std::string_view text) {
  std::string out;
  AppendFixAmpersands(out, text);
  return out;
}

void AppendEncodeMarkupTokens(std::string& out, std::string_view text) {
  std::string unmarked;
  const char* const textEnd = text.data() + text.size();
  const bool hasBracket = FindAny<'[', ']'>(text.data(), textEnd) != textEnd;
  if (hasBracket && (Holds(text, kCdataStart) || Holds(text, kCdataEnd)))
    text = unmarked = Without(Without(text, kCdataStart), kCdataEnd);
  AppendReplacing<'<', '>', '"', '&', '\r'>(
      out, text, [](const char*& at, const char* end) -> const Replacement& {
        static constexpr Replacements kReplacements(kTokens);
        static constexpr Replacement kCarriageReturn("\r");
        const char c = *at++;
        if (c == '\r') {
          if (at == end || *at != '\n') return kCarriageReturn;
          ++at;
        }
        return kReplacements[c];
      });
}

std::string EncodeMarkupTokens(std::string_view text) {
  std::string out;
  AppendEncodeMarkupTokens(out, text);
  return out;
}

void AppendDecodeMarkupTokens(std::string& out, std::string_view text) {
  // One pass is enough, because no token decodes to a part of another one. It searches for the
  // character of a token that is rare elsewhere, and copies in pieces that are still in the cache.
  constexpr std::size_t kPiece = 4096;
  constexpr std::size_t kMark = kTokenPrefix.size() - 1;
  std::size_t copied = 0;
  const auto copyTo = [&](std::size_t end) {
    out += text.substr(copied, end - copied);
    copied = end;
  };
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t found = text.substr(at, kPiece).find(kTokenPrefix[kMark]);
    if (found == std::string_view::npos) {
      at = std::min(at + kPiece, text.size());
      if (at > copied + kMark) copyTo(at - kMark);
      continue;
    }
    at += found + 1;
    if (at - copied <= kMark) continue;
    const std::size_t begin = at - kTokenPrefix.size();
    const std::string_view rest = text.substr(begin);
    const auto* const token =
        std::find_if(kTokens.begin(), kTokens.end(),
                     [&](const Token& candidate) { return rest.starts_with(candidate.token); });
    if (token == kTokens.end()) continue;
    copyTo(begin);
    out += token->text;
    at = copied = begin + token->token.size();
  }
  copyTo(text.size());
}

std::string DecodeMarkupTokens(std::string_view text) {
  std::string out;
  AppendDecodeMarkupTokens(out, text);
  return out;
}

void AppendEncodeHtmlEntities(std::string& out, std::string_view text) {
  AppendReplacing<'<', '>', '"'>(out, text,
                                 [](const char*& at, const char* /*end*/) -> const Replacement& {
                                   static constexpr Replacements kReplacements(kEntities);
                                   return kReplacements[*at++];
                                 });
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
  // From the last digit to the first, so that the power of 16 grows.
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
