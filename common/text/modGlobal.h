// The text helpers: escaping for runtime text, and colours. Free functions without state. Texts are
// UTF-8.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "common/values/Variant.h"

namespace kvo {

// Makes every "&" that does not already begin "&amp;" (in any case) into "&amp;". By definition
// the pattern (.*?)(&)([^a]|a[^m]|am[^p]|amp[^;])(.*?) is replaced by $1&amp;$3$4 until it matches
// no more; so an "&", "&a", "&am" or "&amp" at the very end stays raw, and "&lt;" is escaped again.
std::string FixAmpersands(std::string_view text);
void AppendFixAmpersands(std::string& out, std::string_view text);

// The token form of HTML text. By definition seven passes, each over the whole text: every
// "<![CDATA[" removed, every "]]>" removed, then "<", ">", the double quote and "&" replaced by
// "kv:@lt;", "kv:@gt;", "kv:@quot;" and "kv:@amp;", and CR LF by "kv:@br;". A lone CR or LF stays.
std::string EncodeMarkupTokens(std::string_view text);
void AppendEncodeMarkupTokens(std::string& out, std::string_view text);

// Tokens back into characters; removed CDATA markers do not come back.
std::string DecodeMarkupTokens(std::string_view text);
void AppendDecodeMarkupTokens(std::string& out, std::string_view text);

// "<", ">" and the double quote as entities; "&" stays.
std::string EncodeHtmlEntities(std::string_view text);
void AppendEncodeHtmlEntities(std::string& out, std::string_view text);

// Removes blanks (U+0020) and CR LF pairs from both ends, in any mixture.
std::string TrimCrLf(std::string text);
// A null (empty) value is returned as it is.
Variant TrimCrLf(Variant text);

// A Windows colour number: red in the lowest byte, green in the next, blue in the third.
using ColorNumber = std::int32_t;

// RRGGBB without a "#": the caller adds it.
std::string ColorToHex(ColorNumber color);
// At least two upper-case hexadecimal digits; a negative number gives the four of its 16 bits.
std::string HexPad2(std::int16_t number);
// RuntimeError 13 for a character below "A" that is no digit, 6 beyond 16 bits. Letters above "F"
// count on (a "Z" is 35): deliberate.
std::int16_t HexToInt(std::string_view text);
// #rrggbb or rgb(r,g,b), blanks around it allowed, parts clamped to 255; else white and false.
bool ParseColor(std::string_view text, std::uint8_t& red, std::uint8_t& green, std::uint8_t& blue);

}  // namespace kvo
