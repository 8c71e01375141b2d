// Defines numbers, flags, colours and suggestions by regular expressions over the whole text, the C
// library and complete tables.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <optional>
#include <regex>
#include <string>
#include <string_view>
#include <vector>

namespace kvo {

inline std::string WithoutBlanks(std::string text) {
  while (text.starts_with(' ')) text.erase(0, 1);
  while (text.ends_with(' ')) text.pop_back();
  return text;
}

inline std::string LowerByDefinition(std::string text) {
  for (std::size_t i = 0; i < 26; ++i)
    std::replace(text.begin(), text.end(), "ABCDEFGHIJKLMNOPQRSTUVWXYZ"[i],
                 "abcdefghijklmnopqrstuvwxyz"[i]);
  return text;
}

inline std::optional<double> NumberByDefinition(const std::string& padded) {
  const std::string text = WithoutBlanks(padded);
  std::smatch found;
  static const std::regex hexadecimal("&[Hh]0*([0-9A-Fa-f]*)");
  if (text.size() > 2 && std::regex_match(text, found, hexadecimal)) {
    if (found.length(1) > 8) return std::numeric_limits<double>::infinity();
    return static_cast<std::int32_t>(std::strtoul(found.str(1).c_str(), nullptr, 16));
  }
  static const std::regex decimal(
      "([+-]?)(?:([0-9][0-9.]*)(?:,([0-9]*))?|,([0-9]+))(?:[eE]([+-]?[0-9]+))?");
  if (!std::regex_match(text, found, decimal)) return std::nullopt;
  std::string whole = found.str(2);
  std::erase(whole, '.');
  std::string number = found.str(1) + "0" + whole + "." + found.str(3) + found.str(4) + "0";
  if (found.length(5) > 0) number += "e" + found.str(5);
  return std::strtod(number.c_str(), nullptr);
}

// Rounds halves to even. Returns nothing outside 32 bits.
inline std::optional<std::int32_t> WholeByDefinition(double number) {
  const double below = std::floor(number);
  const double above = number - below;
  const bool up = above > 0.5 || (above == 0.5 && std::fmod(below, 2) != 0);
  const double whole = up ? below + 1 : below;
  if (!(whole >= -2147483648.0 && whole <= 2147483647.0)) return std::nullopt;
  return static_cast<std::int32_t>(whole);
}

inline std::optional<bool> FlagByDefinition(const std::string& text) {
  const std::string lower = LowerByDefinition(text);
  if (lower == "true" || text == "#TRUE#") return true;
  if (lower == "false" || text == "#FALSE#") return false;
  const std::optional<double> number = NumberByDefinition(text);
  if (!number) return std::nullopt;
  return *number != 0;
}

// The digits, or the number of the error. All arithmetic uses 16 bits.
struct HexDigits {
  std::int16_t value = 0;
  int error = 0;
};
inline HexDigits HexToIntByDefinition(const std::string& text) {
  std::int16_t sum = 0;
  for (std::size_t place = 0; place < text.size(); ++place) {
    const std::string digit = text.substr(text.size() - 1 - place, 1);
    const bool lower = digit[0] >= 'a' && digit[0] <= 'z';
    const int code = static_cast<unsigned char>(digit[0]) - (lower ? 32 : 0);
    if (code < 65 && digit.find_first_of("0123456789") != 0) return {0, 13};
    std::int16_t value = 0;
    std::int16_t power = 1;
    for (std::size_t i = 0; i < place; ++i)
      if (__builtin_mul_overflow(power, 16, &power)) return {0, 6};
    if (__builtin_mul_overflow(code < 65 ? code - 48 : code - 55, power, &value)) return {0, 6};
    if (__builtin_add_overflow(sum, value, &sum)) return {0, 6};
  }
  return {sum, 0};
}

inline std::string HexByDefinition(std::int16_t number) {
  char text[8];
  std::snprintf(text, sizeof text, "%02X",
                static_cast<unsigned>(static_cast<std::uint16_t>(number)));
  return text;
}
// Red is the lowest byte but comes first. The components of a negative number are negative.
inline std::string ColorByDefinition(std::int32_t color) {
  return HexByDefinition(static_cast<std::int16_t>(color % 256)) +
         HexByDefinition(static_cast<std::int16_t>(color / 256 % 256)) +
         HexByDefinition(static_cast<std::int16_t>(color / 65536));
}

struct Color {
  bool parsed = false;
  int red = 255;
  int green = 255;
  int blue = 255;
  bool operator==(const Color&) const = default;
};
inline Color ParseColorByDefinition(const std::string& padded) {
  const std::string text = WithoutBlanks(padded);
  std::smatch part;
  static const std::regex hexadecimal("#([0-9a-f]{2})([0-9a-f]{2})([0-9a-f]{2})",
                                      std::regex::icase);
  if (std::regex_match(text, part, hexadecimal))
    return {true, std::stoi(part.str(1), nullptr, 16), std::stoi(part.str(2), nullptr, 16),
            std::stoi(part.str(3), nullptr, 16)};
  static const std::regex decimal("rgb\\(([0-9]{1,3}),([0-9]{1,3}),([0-9]{1,3})\\)",
                                  std::regex::icase);
  if (std::regex_match(text, part, decimal))
    return {true, std::min(255, std::stoi(part.str(1))), std::min(255, std::stoi(part.str(2))),
            std::min(255, std::stoi(part.str(3)))};
  return {};
}

// Computes the whole table of distances; swapping two neighbours is one edit.
inline std::size_t DistanceByDefinition(const std::string& a, const std::string& b) {
  std::vector<std::vector<std::size_t>> table(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
  for (std::size_t i = 0; i <= a.size(); ++i) {
    for (std::size_t j = 0; j <= b.size(); ++j) {
      if (i == 0 || j == 0) {
        table[i][j] = i + j;
        continue;
      }
      const std::size_t replaced = table[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
      table[i][j] = std::min({table[i - 1][j] + 1, table[i][j - 1] + 1, replaced});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
        table[i][j] = std::min(table[i][j], table[i - 2][j - 2] + 1);
    }
  }
  return table[a.size()][b.size()];
}
// Longer texts than 48 characters are not misspelt names.
inline std::string SuggestByDefinition(const std::string& name,
                                       const std::vector<std::string_view>& candidates) {
  std::string best;
  std::size_t least = std::max<std::size_t>(name.size() / 3, 1) + 1;
  if (name.empty() || name.size() > 48) return best;
  for (const std::string_view candidate : candidates) {
    if (candidate.size() > 48) continue;
    const std::size_t distance =
        DistanceByDefinition(LowerByDefinition(name), LowerByDefinition(std::string(candidate)));
    if (distance >= least) continue;
    least = distance;
    best = candidate;
  }
  return best;
}

}  // namespace kvo
