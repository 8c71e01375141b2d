#include "common/modGlobal.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <limits>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include "common/Ascii.h"
#include "common/FormControls.h"
#include "common/FormPropertyGrid.h"
#include "common/Object.h"
#include "common/RuntimeError.h"

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

// Texts by character: what stands for it, or nothing when it stands for itself.
using Replacements = std::array<std::string_view, 256>;

constexpr Replacements kMarkupReplacements = [] {
  Replacements table{};
  for (const Token& token : kTokens)
    if (token.text.size() == 1) table[static_cast<unsigned char>(token.text[0])] = token.token;
  return table;
}();

constexpr Replacements kEntityReplacements = [] {
  Replacements table{};
  table['<'] = "&lt;";
  table['>'] = "&gt;";
  table['"'] = "&quot;";
  return table;
}();

std::string_view Replacement(const Replacements& table, char c) {
  return table[static_cast<unsigned char>(c)];
}

// Whether the "&" with which `text` begins is to be escaped: the first character that departs from
// "amp;" decides, and there must be one.
bool IsBareAmpersand(const char* text, std::size_t size) {
  constexpr std::string_view kRest = "amp;";
  for (std::size_t i = 0; i < kRest.size(); ++i) {
    if (i + 1 == size) return false;  // the text ends before it departs: stays raw
    if (LowerAscii(text[i + 1]) != kRest[i]) return true;
  }
  return false;
}

// Copies up to the first "&" or to the end, whichever comes first, and says how much that was. May
// write up to kBlock surplus characters behind that.
constexpr std::size_t kBlock = 16;

#ifdef __SSE2__
std::size_t CopyUpToAmpersand(const char* from, std::size_t size, char* to) {
  std::size_t copied = 0;
  const __m128i ampersands = _mm_set1_epi8('&');
  for (; size - copied >= kBlock; copied += kBlock) {
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + copied));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to + copied), block);
    const auto hits = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(block, ampersands)));
    if (hits != 0) return copied + static_cast<std::size_t>(std::countr_zero(hits));
  }
  for (; copied < size && from[copied] != '&'; ++copied) to[copied] = from[copied];
  return copied;
}
#else
std::size_t CopyUpToAmpersand(const char* from, std::size_t size, char* to) {
  const void* found = std::memchr(from, '&', size);
  const std::size_t copied =
      found == nullptr ? size : static_cast<std::size_t>(static_cast<const char*>(found) - from);
  std::memcpy(to, from, copied);
  return copied;
}
#endif

// The second to seventh pass of the token form over the text that the first pass leaves, which
// comes in character by character. What may still be removed or joined is held back.
class MarkupTokenEncoder {
 public:
  explicit MarkupTokenEncoder(std::string& out) : out_(out) {}

  void Put(char c) {
    if (c == ']') {
      if (brackets_ == 2)
        Emit(']');
      else
        ++brackets_;
      return;
    }
    if (c == '>' && brackets_ == 2) {
      brackets_ = 0;
      return;
    }
    ReleaseBrackets();
    Emit(c);
  }

  // A run of characters without a meaning of their own.
  void PutPlain(std::string_view run) {
    if (run.empty()) return;
    Finish();
    out_ += run;
  }

  void Finish() {
    ReleaseBrackets();
    ReleaseCarriageReturn();
  }

 private:
  void ReleaseBrackets() {
    for (; brackets_ > 0; --brackets_) Emit(']');
  }
  void ReleaseCarriageReturn() {
    if (carriageReturn_) out_ += '\r';
    carriageReturn_ = false;
  }
  void Emit(char c) {
    if (c == '\n' && carriageReturn_) {
      carriageReturn_ = false;
      out_ += "kv:@br;";
      return;
    }
    ReleaseCarriageReturn();
    if (c == '\r') {
      carriageReturn_ = true;
      return;
    }
    const std::string_view token = Replacement(kMarkupReplacements, c);
    if (token.empty())
      out_ += c;
    else
      out_ += token;
  }

  std::string& out_;
  int brackets_ = 0;  // "]" held back, at most the two that may begin "]]>"
  bool carriageReturn_ = false;
};

constexpr std::array<bool, 256> kMarkupSpecial = [] {
  std::array<bool, 256> special{};
  for (const char c : std::string_view("<>\"&]\r\n")) special[static_cast<unsigned char>(c)] = true;
  return special;
}();

char UpperAscii(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; }

bool IsHexDigit(char c) {
  c = LowerAscii(c);
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f');
}

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
    for (; digits < text.size() && text[digits] >= '0' && text[digits] <= '9'; ++digits)
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
  const char* from = text.data();
  const char* const end = from + text.size();
  if (text.empty() || std::memchr(from, '&', text.size()) == nullptr) {
    out += text;
    return;
  }

  // The text grows in place, with room to spare that is given back at the end.
  constexpr std::string_view kEscaped = "&amp;";
  std::size_t used = out.size();
  for (;;) {
    const auto rest = static_cast<std::size_t>(end - from);
    if (const std::size_t needed = rest + kBlock + kEscaped.size(); out.size() - used < needed)
      out.resize(used + needed + rest / 8);
    char* to = out.data() + used;
    const std::size_t plain = CopyUpToAmpersand(from, rest, to);
    used += plain;
    if (plain == rest) break;
    from += plain;
    if (IsBareAmpersand(from, rest - plain)) {
      std::memcpy(to + plain, kEscaped.data(), kEscaped.size());
      used += kEscaped.size();
    } else {
      to[plain] = '&';
      ++used;
    }
    ++from;
  }
  out.resize(used);
}

std::string FixAmpersands(std::string_view text) {
  std::string out;
  AppendFixAmpersands(out, text);
  return out;
}

void AppendEncodeMarkupTokens(std::string& out, std::string_view text) {
  MarkupTokenEncoder encoder(out);
  std::size_t at = 0;
  while (at < text.size()) {
    std::size_t plain = at;
    while (plain < text.size() && !kMarkupSpecial[static_cast<unsigned char>(text[plain])]) ++plain;
    encoder.PutPlain(text.substr(at, plain - at));
    at = plain;
    if (at == text.size()) break;
    if (text[at] == '<' && text.substr(at).starts_with(kCdataStart)) {
      at += kCdataStart.size();
    } else {
      encoder.Put(text[at++]);
    }
  }
  encoder.Finish();
}

std::string EncodeMarkupTokens(std::string_view text) {
  std::string out;
  AppendEncodeMarkupTokens(out, text);
  return out;
}

void AppendDecodeMarkupTokens(std::string& out, std::string_view text) {
  // The characters that tokens become never belong to another token, so one pass is enough.
  std::size_t copied = 0;
  for (std::size_t at = text.find(kTokenPrefix); at != std::string_view::npos;
       at = text.find(kTokenPrefix, at)) {
    const std::string_view rest = text.substr(at);
    const auto* token = std::ranges::find_if(
        kTokens, [&](const Token& candidate) { return rest.starts_with(candidate.token); });
    if (token == kTokens.end()) {
      ++at;
      continue;
    }
    out += text.substr(copied, at - copied);
    out += token->text;
    at += token->token.size();
    copied = at;
  }
  out += text.substr(copied);
}

std::string DecodeMarkupTokens(std::string_view text) {
  std::string out;
  AppendDecodeMarkupTokens(out, text);
  return out;
}

void AppendEncodeHtmlEntities(std::string& out, std::string_view text) {
  std::size_t copied = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const std::string_view entity = Replacement(kEntityReplacements, text[at]);
    if (entity.empty()) continue;
    out += text.substr(copied, at - copied);
    out += entity;
    copied = at + 1;
  }
  out += text.substr(copied);
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

GuidText CreateGUID() { return ThePlatform().NewGuid(); }

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

const PropertyGridItem* GetSelectedChoice(const PropertyGridItem& item) {
  const std::string value = ToText(item.Value());
  for (const auto& choice : item.Choices())
    if (choice->Caption() == value) return choice.get();
  return nullptr;
}

const PropertyGridItem* FindChoiceByValue(const PropertyGridItem& item, std::string_view value) {
  for (const auto& choice : item.Choices())
    if (ToText(choice->Value()) == value) return choice.get();
  return nullptr;
}

void ShowPropertyPages(ObjectRef object, std::string_view caption, WindowHandle owner) {
  if (object == nullptr) throw RuntimeError(ErrorNumber::objectNotSet);
  auto pages = object->PropertyPages();
  if (!pages) {
    try {
      pages = ToObject(object->Get("Object"))->PropertyPages();
    } catch (const RuntimeError&) {
      // No inner object either: the answer below says so.
    }
  }
  if (!pages) throw RuntimeError(ErrorNumber::typeMismatch);
  ThePlatform().ShowPropertyFrame(owner, caption, std::move(object), *pages);
}

void SelectAllText(TextBox& box) {
  constexpr std::size_t kLeftButton = 1;
  constexpr std::uint8_t kDown = 0x80;
  if ((ThePlatform().KeyboardState()[kLeftButton] & kDown) != 0 || box.SelLength() != 0) return;
  box.SelStart(0);
  box.SelLength(CharacterCount(box.Text()));
}

}  // namespace kvo
