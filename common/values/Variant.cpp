#include "common/values/Variant.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

#include "common/values/Ascii.h"
#include "common/values/Floating.h"
#include "common/values/Object.h"
#include "common/values/RuntimeError.h"

namespace kvo {
namespace {

std::optional<double> ParseHexadecimal(std::string_view digits) {
  std::uint32_t bits = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), bits, 16);
  if (end != digits.data() + digits.size()) return std::nullopt;
  if (error == std::errc::result_out_of_range) return std::numeric_limits<double>::infinity();
  if (error != std::errc()) return std::nullopt;
  return static_cast<std::int32_t>(bits);
}

[[noreturn]] void NoConversion(const Variant& value) {
  const std::string* text = value.If<std::string>();
  throw RuntimeError(ErrorNumber::typeMismatch, text ? '"' + *text + '"' : std::string());
}

std::int32_t RoundToInteger(double number) {
  const double whole = std::nearbyint(number);  // the default rounding mode: halves to even
  if (!(whole >= std::numeric_limits<std::int32_t>::min() &&
        whole <= std::numeric_limits<std::int32_t>::max()))
    throw RuntimeError(ErrorNumber::overflow);
  return static_cast<std::int32_t>(whole);
}

std::string NumberText(double number) {
  std::string text = ShortestText(number);
  if (const auto point = text.find('.'); point != std::string::npos) text[point] = ',';
  return text;
}

}  // namespace

std::optional<double> ParseNumber(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  if (text.size() > 2 && text[0] == '&' && (text[1] == 'H' || text[1] == 'h'))
    return ParseHexadecimal(text.substr(2));

  std::string plain;  // the number in the form that ReadFloating accepts
  std::size_t at = 0;
  if (at < text.size() && (text[at] == '+' || text[at] == '-')) {
    if (text[at] == '-') plain += '-';
    ++at;
  }
  bool digits = false;
  for (; at < text.size() && (IsDigit(text[at]) || (digits && text[at] == '.')); ++at) {
    if (text[at] == '.') continue;  // a grouping point is ignored wherever it stands
    plain += text[at];
    digits = true;
  }
  if (!digits) plain += '0';
  if (at < text.size() && text[at] == ',') {
    plain += '.';
    std::size_t decimals = 0;
    for (++at; at < text.size() && IsDigit(text[at]); ++at, ++decimals) plain += text[at];
    if (decimals == 0) plain += '0';
    digits = digits || decimals > 0;
  }
  if (!digits) return std::nullopt;
  if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
    plain += 'e';
    ++at;
    if (at < text.size() && (text[at] == '+' || text[at] == '-')) plain += text[at++];
    if (at == text.size()) return std::nullopt;
    for (; at < text.size() && IsDigit(text[at]); ++at) plain += text[at];
  }
  if (at != text.size()) return std::nullopt;

  return ReadFloating(plain);
}

std::string ToText(const Variant& value) {
  if (const auto* text = value.If<std::string>()) return *text;
  if (const auto* integer = value.If<std::int32_t>()) return std::to_string(*integer);
  if (const auto* flag = value.If<bool>()) return *flag ? "True" : "False";
  if (const auto* number = value.If<double>()) return NumberText(*number);
  if (value.IsEmpty()) return {};
  NoConversion(value);
}

bool ToFlag(const Variant& value) {
  if (const auto* flag = value.If<bool>()) return *flag;
  if (const auto* integer = value.If<std::int32_t>()) return *integer != 0;
  if (const auto* number = value.If<double>()) return *number != 0;
  if (value.IsEmpty()) return false;
  if (const auto* text = value.If<std::string>()) {
    if (EqualIgnoringCase(*text, "true") || *text == "#TRUE#") return true;
    if (EqualIgnoringCase(*text, "false") || *text == "#FALSE#") return false;
    if (const auto number = ParseNumber(*text)) return *number != 0;
  }
  NoConversion(value);
}

std::int32_t ToInteger(const Variant& value) {
  if (const auto* integer = value.If<std::int32_t>()) return *integer;
  if (const auto* flag = value.If<bool>()) return *flag ? -1 : 0;  // true is -1, all bits set
  if (const auto* number = value.If<double>()) return RoundToInteger(*number);
  if (value.IsEmpty()) return 0;
  if (const auto* text = value.If<std::string>())
    if (const auto number = ParseNumber(*text)) return RoundToInteger(*number);
  NoConversion(value);
}

ObjectRef ToObject(const Variant& value) {
  if (const auto* object = value.If<ObjectRef>(); object && *object) return *object;
  if (value.IsEmpty() || value.If<ObjectRef>()) throw RuntimeError(ErrorNumber::objectNotSet);
  NoConversion(value);
}

}  // namespace kvo
