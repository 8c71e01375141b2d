#include "common/values/Floating.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <locale>
#include <sstream>
#include <system_error>

namespace kvo {

double ReadFloating(std::string_view text) {
  double number = 0;
#ifdef __cpp_lib_to_chars  // older libraries convert whole numbers only
  const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
  if (read.ec == std::errc()) return number;  // an error does not tell too large from too small
#endif
  std::istringstream in{std::string(text)};
  in.imbue(std::locale::classic());
  in >> number;
  if (in.fail() && std::abs(number) == std::numeric_limits<double>::max())
    return number * std::numeric_limits<double>::infinity();
  return number;
}

#ifdef __cpp_lib_to_chars

std::string ShortestText(double number) {
  char buffer[32];
  return {buffer, std::to_chars(buffer, buffer + sizeof buffer, number).ptr};
}

std::string ShortestFixedText(double number) {
  char buffer[400];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, number, std::chars_format::fixed);
  return {buffer, end.ptr};
}

#else

namespace {

std::string Written(double number, std::ios::fmtflags format, int decimals) {
  std::ostringstream out;
  out.imbue(std::locale::classic());
  out.setf(format, std::ios::floatfield);
  out.precision(decimals);
  out << number;
  return out.str();
}

// Writes "d.ddde+xx" with the fewest digits that read back as the number.
std::string ShortestScientific(double number) {
  for (int decimals = 0;; ++decimals) {
    std::string text = Written(number, std::ios::scientific, decimals);
    if (decimals == 16 || ReadFloating(text) == number) return text;
    // Doubles are denser below a power of two than above it, so the next decimal up may read back
    // as the number where the nearest does not.
    int exponent = 0;
    if (std::abs(std::frexp(number, &exponent)) != 0.5) continue;
    std::size_t last = text.find('e') - 1;
    if (text[last] == '9') continue;
    ++text[last];
    if (ReadFloating(text) == number) return text;
  }
}

}  // namespace

std::string ShortestFixedText(double number) {
  if (!std::isfinite(number)) return ShortestText(number);
  std::string text = ShortestScientific(number);
  const std::size_t e = text.find('e');
  const int exponent = std::stoi(text.substr(e + 1));
  text.resize(e);
  std::erase(text, '.');
  const bool negative = text.starts_with('-');
  if (negative) text.erase(0, 1);
  const int digits = static_cast<int>(text.size());
  // Keeps all digits of a larger whole number.
  if (exponent >= digits) return Written(number, std::ios::fixed, 0);
  if (exponent < 0)
    text.insert(0, "0." + std::string(static_cast<std::size_t>(-exponent - 1), '0'));
  else if (exponent < digits - 1)
    text.insert(static_cast<std::size_t>(exponent) + 1, ".");
  return negative ? '-' + text : text;
}

std::string ShortestText(double number) {
  if (std::isnan(number)) return std::signbit(number) ? "-nan" : "nan";
  if (std::isinf(number)) return number < 0 ? "-inf" : "inf";
  std::string scientific = ShortestScientific(number);
  std::string fixed = ShortestFixedText(number);
  return fixed.size() <= scientific.size() ? fixed : scientific;
}

#endif

}  // namespace kvo
