#include "fuzz/ModGlobalRules.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "common/forms/FormControls.h"
#include "common/frame/TagWriter.h"
#include "common/text/Suggest.h"
#include "common/text/modGlobal.h"
#include "common/values/Ascii.h"
#include "common/values/GermanFormat.h"
#include "common/values/Localized.h"
#include "common/values/RuntimeError.h"
#include "fuzz/Demand.h"
#include "tests/core/Definitions.h"
#include "tests/core/ErrorOf.h"
#include "tests/core/FormatDefinition.h"
#include "tests/core/ValueDefinitions.h"

namespace kvo {
namespace {

// Longest texts for the definitions' regular expressions, which need stack and time per character:
// for plain expressions, for patterns, and for the one that FixAmpersands repeats.
constexpr std::size_t kMostForExpressions = 400;
constexpr std::size_t kMostForPatterns = 60;
constexpr std::size_t kMostForRepeatedExpressions = 64;

constexpr char kDate[] = "23.04.2004 16:09:53";

std::vector<std::string_view> LinesOf(std::string_view text) {
  std::vector<std::string_view> lines;
  for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
    lines.push_back(text.substr(0, end));
    text.remove_prefix(end + 1);
  }
  lines.push_back(text);
  return lines;
}

// Reads the first bytes of the text as a number.
template <class Number>
Number NumberOf(std::string_view text) {
  Number number{};
  std::memcpy(&number, text.data(), std::min(text.size(), sizeof number));
  return number;
}

void CheckMarkup(const std::string& text) {
  const std::string encoded = EncodeMarkupTokens(text);
  Demand(encoded == EncodeByDefinition(text), "EncodeMarkupTokens");
  Demand(EncodeMarkupTokens(encoded) == encoded, "EncodeMarkupTokens twice");
  Demand(DecodeMarkupTokens(text) == DecodeByDefinition(text), "DecodeMarkupTokens");
  Demand(EncodeHtmlEntities(text) == EntitiesByDefinition(text), "EncodeHtmlEntities");
  Demand(TrimCrLf(text) == TrimByDefinition(text), "TrimCrLf");
  Demand(TrimCrLf(Variant(text)) == Variant(TrimByDefinition(text)), "TrimCrLf of a value");
  Demand(FixAmpersands(FixAmpersands(text)) == FixAmpersands(text), "FixAmpersands twice");
  if (text.size() <= kMostForRepeatedExpressions)
    Demand(FixAmpersands(text) == FixAmpersandsByDefinition(text), "FixAmpersands");

  // The Append functions keep existing text and append the same result.
  const auto appended = [&](void (*append)(std::string&, std::string_view)) {
    std::string out = "\r&";
    append(out, text);
    return out;
  };
  Demand(appended(AppendFixAmpersands) == "\r&" + FixAmpersands(text), "AppendFixAmpersands");
  Demand(appended(AppendEncodeMarkupTokens) == "\r&" + encoded, "AppendEncodeMarkupTokens");
  Demand(appended(AppendDecodeMarkupTokens) == "\r&" + DecodeMarkupTokens(text),
         "AppendDecodeMarkupTokens");
  Demand(appended(AppendEncodeHtmlEntities) == "\r&" + EncodeHtmlEntities(text),
         "AppendEncodeHtmlEntities");
}

void CheckTags(const std::string& text) {
  const std::string fixed = FixAmpersands(text);
  std::string out = "x";
  TagWriter tag(out, "kv", text);
  tag.Attribute(text, text);
  tag.AttributeAsIs("c", text);
  tag.AttributeWith("d", text, AppendEncodeHtmlEntities);
  tag.Close();
  AppendEndTag(out, text, "e");
  Demand(out == "x<kv:" + text + ' ' + text + "=\"" + fixed + "\" c=\"" + text + "\" d=\"" +
                    EntitiesByDefinition(text) + "\"></" + text + ":e>",
         "TagWriter");
  out.clear();
  TagWriter(out, text, "e").CloseEmpty();
  Demand(out == "<" + text + ":e/>", "an empty tag");
}

void CheckColors(const std::string& text) {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  const bool parsed = ParseColor(text, red, green, blue);
  if (text.size() <= kMostForExpressions)
    Demand(Color{parsed, red, green, blue} == ParseColorByDefinition(text), "ParseColor");

  const auto color = NumberOf<std::int32_t>(text);
  Demand(ColorToHex(color) == ColorByDefinition(color), "ColorToHex");
  const auto number = NumberOf<std::int16_t>(text);
  Demand(HexPad2(number) == HexByDefinition(number), "HexPad2");
  const HexDigits digits = HexToIntByDefinition(text);
  std::int16_t read = 0;
  Demand(ErrorOf([&] { read = HexToInt(text); }) == digits.error && read == digits.value,
         "HexToInt");
}

void CheckConversions(const std::string& text) {
  constexpr int kTypeMismatch = 13;
  constexpr int kOverflow = 6;
  Demand(ToText(Variant(text)) == text, "ToText of a text");
  const auto held = NumberOf<double>(text);
  if (std::isfinite(held)) {
    const std::string written = ToText(Variant(held));
    Demand(written.find('.') == std::string::npos, "ToText writes a point");
    Demand(NumberByDefinition(written) == held, "ToText of a number");
    const auto whole = WholeByDefinition(held);
    std::int32_t integer = 0;
    const int error = ErrorOf([&] { integer = ToInteger(Variant(held)); });
    Demand(whole ? error == 0 && integer == *whole : error == kOverflow, "ToInteger of a number");
  }
  const auto integer = NumberOf<std::int32_t>(text);
  Demand(NumberByDefinition(ToText(Variant(integer))) == integer, "ToText of a whole number");

  if (text.size() > kMostForExpressions) return;
  const std::optional<double> number = NumberByDefinition(text);
  Demand(ParseNumber(text) == number, "ParseNumber");
  const std::optional<std::int32_t> whole = number ? WholeByDefinition(*number) : std::nullopt;
  std::int32_t read = 0;
  const int error = ErrorOf([&] { read = ToInteger(Variant(text)); });
  Demand(whole ? error == 0 && read == *whole : error == (number ? kOverflow : kTypeMismatch),
         "ToInteger");
  const std::optional<bool> truth = FlagByDefinition(text);
  bool flag = false;
  const int noFlag = ErrorOf([&] { flag = ToFlag(Variant(text)); });
  Demand(truth ? noFlag == 0 && flag == *truth : noFlag == kTypeMismatch, "ToFlag");
}

// Formats the first line with the second line as the pattern, and some fixed values with the whole
// text as the pattern.
void CheckFormat(const std::string& text) {
  if (text.size() > kMostForPatterns) return;
  const auto demand = [](const Variant& value, const std::string& pattern) {
    Demand(GermanFormat(value, pattern) == GermanFormatByDefinition(value, pattern),
           "GermanFormat by \"" + pattern + '"');
  };
  const std::vector<std::string_view> lines = LinesOf(text);
  if (lines.size() > 1) {
    const std::string pattern(lines[1]);
    const std::string_view value = lines[0];
    demand(Variant(value), pattern);
    demand(NumberOf<double>(value), pattern);
    demand(NumberOf<std::int32_t>(value), pattern);
    if (const auto number = NumberByDefinition(std::string(value))) demand(*number, pattern);
  }
  for (const Variant& value : {Variant(kDate), Variant(-1134.995), Variant(7), Variant(true)})
    demand(value, text);
  for (const char* pattern : {"#,##0.00", "dd. mmmm yyyy hh:mm:ss"}) demand(Variant(text), pattern);
}

// Takes the first line as a misspelt name and the other lines as the known names.
void CheckNames(std::string_view text) {
  std::vector<std::string_view> lines = LinesOf(text);
  const std::string name(lines.front());
  lines.erase(lines.begin());
  if (lines.size() < 100)
    Demand(Suggest(name, lines) == SuggestByDefinition(name, lines), "Suggest");
  for (const std::string_view line : lines)
    Demand(EqualIgnoringCase(name, line) ==
               (LowerByDefinition(name) == LowerByDefinition(std::string(line))),
           "EqualIgnoringCase");
}

// Builds a message from the first line, with the second and third line as its arguments.
void CheckSaying(std::string_view text) {
  const std::vector<std::string_view> lines = LinesOf(text);
  if (lines.size() < 3) return;
  const std::string plain = ReplaceAll(std::string(lines[0]), "{}", "");
  if (plain.find("{}") != std::string::npos) return;
  const std::string pattern = plain + "{}, {}" + plain;
  Demand(Say({pattern, pattern}, {lines[1], lines[2]}) ==
             plain + std::string(lines[1]) + ", " + std::string(lines[2]) + plain,
         "Say");
}

void CheckCharacters(const std::string& text) {
  // The offsets of every character's first byte, and of the end. The first character starts at 0.
  std::vector<std::size_t> begins;
  for (std::size_t at = 0; at < text.size(); ++at)
    if (static_cast<unsigned char>(text[at]) / 64 != 2) begins.push_back(at);
  Demand(CharacterCount(text) == begins.size(), "CharacterCount");
  if (!begins.empty()) begins.front() = 0;
  begins.push_back(text.size());
  Demand(CharacterOffset(text, 0) == 0, "CharacterOffset of the first character");
  for (std::size_t character = 1; character <= begins.size() && character < 100; ++character)
    Demand(CharacterOffset(text, character) == begins[std::min(character, begins.size() - 1)],
           "CharacterOffset");
}

}  // namespace

void CheckTextHelpers(std::string_view view) {
  const std::string text(view);
  CheckMarkup(text);
  CheckTags(text);
  CheckColors(text);
  CheckConversions(text);
  CheckFormat(text);
  CheckNames(text);
  CheckSaying(text);
  CheckCharacters(text);
}

}  // namespace kvo
