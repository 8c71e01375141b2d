// The shared helpers: text escaping for runtime text, colours, lookups in a property grid, and the
// two user-interface helpers. Free functions without state. Texts are UTF-8.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "common/Platform.h"
#include "common/Variant.h"

namespace kvo {

class PropertyGridItem;
class TextBox;

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

// Without blanks (U+0020) and CR LF pairs at both ends, however they are interleaved.
std::string TrimCrLf(std::string text);
// A null (empty) value is returned as it is.
Variant TrimCrLf(Variant text);

// A new identifier from the system's generator: "{" 8-4-4-4-12 upper-case digits "}".
GuidText CreateGUID();

// RRGGBB without a "#": the caller adds it.
std::string ColorToHex(ColorNumber color);
// At least two upper-case hexadecimal digits; a negative number gives the four of its 16 bits.
std::string HexPad2(std::int16_t number);
// RuntimeError 13 for a character below "A" that is no digit, 6 beyond 16 bits. Letters above "F"
// count on (a "Z" is 35): deliberate.
std::int16_t HexToInt(std::string_view text);
// #rrggbb or rgb(r,g,b), blanks around it allowed, parts clamped to 255; else white and false.
bool ParseColor(std::string_view text, std::uint8_t& red, std::uint8_t& green, std::uint8_t& blue);

// The first child whose caption equals the item's current value; nullptr when there is none.
const PropertyGridItem* GetSelectedChoice(const PropertyGridItem& item);
// The first child whose value equals the text; nullptr when there is none.
const PropertyGridItem* FindChoiceByValue(const PropertyGridItem& item, std::string_view value);

// Shows the property frame over the object and the pages that it (or the object that it wraps as
// its member `Object`) names. RuntimeError 13 when neither names any, or there is no object.
void ShowPropertyPages(ObjectRef object, std::string_view caption, WindowHandle owner);

// Selects the whole text of a box that was entered by keyboard: only when the left mouse button is
// up and nothing is selected yet.
void SelectAllText(TextBox& box);

}  // namespace kvo
