#include "common/values/GermanFormat.h"

#include <array>
#include <chrono>
#include <cmath>
#include <optional>
#include <vector>

#include "common/values/Ascii.h"
#include "common/values/Floating.h"

namespace kvo {
namespace {

constexpr std::array<std::string_view, 12> kMonths = {
    "Januar", "Februar", "März",      "April",   "Mai",      "Juni",
    "Juli",   "August",  "September", "Oktober", "November", "Dezember"};
constexpr std::array<std::string_view, 12> kShortMonths = {
    "Jan", "Feb", "Mrz", "Apr", "Mai", "Jun", "Jul", "Aug", "Sep", "Okt", "Nov", "Dez"};
constexpr std::array<std::string_view, 7> kDays = {"Sonntag",    "Montag",  "Dienstag", "Mittwoch",
                                                   "Donnerstag", "Freitag", "Samstag"};
constexpr std::array<std::string_view, 7> kShortDays = {"So", "Mo", "Di", "Mi", "Do", "Fr", "Sa"};

// --- patterns ---------------------------------------------------------------------------------

// A run of one pattern letter, or characters that stand for themselves.
struct Piece {
  char letter = 0;  // lower case; 0 is literal text
  std::string text;
};

std::vector<Piece> Split(std::string_view pattern, std::string_view letters) {
  std::vector<Piece> pieces;
  const auto literal = [&](std::string_view text) {
    if (pieces.empty() || pieces.back().letter != 0) pieces.emplace_back();
    pieces.back().text += text;
  };
  for (std::size_t at = 0; at < pattern.size(); ++at) {
    const char c = LowerAscii(pattern[at]);
    if (c == '\\' && at + 1 < pattern.size()) {
      literal(pattern.substr(++at, 1));
    } else if (c == '"') {
      const std::size_t end = std::min(pattern.find('"', at + 1), pattern.size());
      literal(pattern.substr(at + 1, end - at - 1));
      at = end;
    } else if (letters.find(c) != std::string_view::npos) {
      if (pieces.empty() || pieces.back().letter != c) pieces.push_back({c, {}});
      pieces.back().text += c;
    } else {
      literal(pattern.substr(at, 1));
    }
  }
  return pieces;
}

// --- numbers ----------------------------------------------------------------------------------

constexpr std::string_view kNumberLetters = "#0,.";

// A number's decimal digits: `whole` without leading zeros, `decimals` exactly as many as asked.
struct Digits {
  bool negative = false;
  std::string whole;
  std::string decimals;
};

Digits Round(double number, std::size_t decimals) {
  const std::string text = ShortestFixedText(std::abs(number));
  const std::size_t point = std::min(text.find('.'), text.size());
  std::string digits = "0" + text.substr(0, point);
  const std::size_t whole = digits.size();
  if (point < text.size()) digits += text.substr(point + 1);
  const std::size_t kept = whole + decimals;
  const bool up = digits.size() > kept && digits[kept] >= '5';
  digits.resize(kept, '0');
  if (up) {
    std::size_t at = kept;
    while (digits[--at] == '9') digits[at] = '0';
    ++digits[at];
  }
  Digits result{false, digits.substr(0, whole), digits.substr(whole)};
  result.whole.erase(0, std::min(result.whole.find_first_not_of('0'), result.whole.size()));
  result.negative = number < 0 && digits.find_first_not_of('0') != std::string::npos;
  return result;
}

std::string FormatNumber(double number, const std::vector<Piece>& pieces) {
  // The layout that the placeholders ask for, whatever literals stand between them.
  std::string placeholders;
  for (const Piece& piece : pieces)
    if (piece.letter != 0) placeholders += piece.text;
  const std::size_t point = std::min(placeholders.find('.'), placeholders.size());
  const std::string_view wholePart = std::string_view(placeholders).substr(0, point);
  std::string decimalPart;
  for (const char c : std::string_view(placeholders).substr(point))
    if (c == '#' || c == '0') decimalPart += c;
  std::size_t least = 0;
  bool counts = false;
  for (const char c : wholePart) {
    counts = counts || c == '0';
    if (c != ',' && counts) ++least;
  }
  const bool grouped = wholePart.find(',') != std::string_view::npos;

  Digits digits = Round(number, decimalPart.size());
  if (digits.whole.size() < least) digits.whole.insert(0, least - digits.whole.size(), '0');
  while (!digits.decimals.empty() && digits.decimals.back() == '0' &&
         decimalPart[digits.decimals.size() - 1] == '#')
    digits.decimals.pop_back();
  std::string text = digits.negative ? "-" : "";
  for (std::size_t at = 0; at < digits.whole.size(); ++at) {
    if (grouped && at > 0 && (digits.whole.size() - at) % 3 == 0) text += '.';
    text += digits.whole[at];
  }
  if (point < placeholders.size()) text += ',' + digits.decimals;

  // The number goes where its first placeholder stands.
  std::string out;
  for (const Piece& piece : pieces) {
    if (piece.letter == 0) {
      out += piece.text;
    } else {
      out += text;
      text.clear();
    }
  }
  return out;
}

// --- dates ------------------------------------------------------------------------------------

struct DateTime {
  std::chrono::year_month_day date{};
  int hour = 0;
  int minute = 0;
  int second = 0;
};

constexpr std::chrono::sys_days kDayZero = std::chrono::sys_days(std::chrono::year(1899) / 12 / 30);

std::optional<int> ReadNumber(std::string_view& text, std::size_t most) {
  std::size_t digits = 0;
  int number = 0;
  for (; digits < text.size() && digits < most && IsDigit(text[digits]); ++digits)
    number = number * 10 + (text[digits] - '0');
  if (digits == 0) return std::nullopt;
  text.remove_prefix(digits);
  return number;
}

bool Skip(std::string_view& text, char c) {
  if (!text.starts_with(c)) return false;
  text.remove_prefix(1);
  return true;
}

bool ReadDate(std::string_view& text, DateTime& value) {
  const auto day = ReadNumber(text, 2);
  if (!day || !Skip(text, '.')) return false;
  const auto month = ReadNumber(text, 2);
  if (!month || !Skip(text, '.')) return false;
  const auto year = ReadNumber(text, 4);
  if (!year || *year < 100) return false;
  value.date = std::chrono::year(*year) / *month / *day;
  return value.date.ok();
}

bool ReadTime(std::string_view& text, DateTime& value) {
  const auto hour = ReadNumber(text, 2);
  if (!hour || !Skip(text, ':')) return false;
  const auto minute = ReadNumber(text, 2);
  const auto second = Skip(text, ':') ? ReadNumber(text, 2) : std::optional(0);
  if (!minute || !second || *hour > 23 || *minute > 59 || *second > 59) return false;
  value.hour = *hour;
  value.minute = *minute;
  value.second = *second;
  return true;
}

std::optional<DateTime> ParseDateTime(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  DateTime value{kDayZero};
  std::string_view rest = text;
  if (!ReadDate(rest, value)) {
    value = DateTime{kDayZero};
    rest = text;
  } else if (rest.empty()) {
    return value;
  } else if (!Skip(rest, ' ')) {
    return std::nullopt;
  }
  if (!ReadTime(rest, value) || !rest.empty()) return std::nullopt;
  return value;
}

std::optional<DateTime> FromDayNumber(double number) {
  constexpr double kFirst = -657434;  // 01.01.0100
  constexpr double kEnd = 2958466;    // 01.01.10000
  if (!(number > kFirst - 1 && number < kEnd)) return std::nullopt;
  // The fraction is a time that counts forwards, even before day zero.
  const double whole = std::trunc(number);
  auto day = kDayZero + std::chrono::days(static_cast<int>(whole));
  long seconds = std::lround(std::abs(number - whole) * 86400);
  if (seconds == 86400) {
    seconds = 0;
    day += std::chrono::days(1);
  }
  const std::chrono::year_month_day date = day;
  if (date.year() > std::chrono::year(9999))
    return std::nullopt;  // rounding the seconds can reach it
  const auto part = static_cast<int>(seconds);
  return DateTime{date, part / 3600, part / 60 % 60, part % 60};
}

std::string Padded(int number, std::size_t least) {
  std::string text = std::to_string(number);
  if (text.size() < least) text.insert(0, least - text.size(), '0');
  return text;
}

std::string FormatDateTime(const DateTime& value, const std::vector<Piece>& pieces) {
  const auto month = static_cast<unsigned>(value.date.month());
  const unsigned weekday = std::chrono::weekday(std::chrono::sys_days(value.date)).c_encoding();
  std::string out;
  bool afterHour = false;
  for (const Piece& piece : pieces) {
    const std::size_t size = piece.text.size();
    const std::size_t pad = std::min<std::size_t>(size, 2);
    switch (piece.letter) {
      case 'd':
        if (size <= 2)
          out += Padded(static_cast<int>(static_cast<unsigned>(value.date.day())), size);
        else
          out += (size == 3 ? kShortDays : kDays)[weekday];
        break;
      case 'm':
        if (afterHour)
          out += Padded(value.minute, pad);
        else if (size <= 2)
          out += Padded(static_cast<int>(month), size);
        else
          out += (size == 3 ? kShortMonths : kMonths)[month - 1];
        break;
      case 'y': {
        const int year = static_cast<int>(value.date.year());
        out += size <= 2 ? Padded(year % 100, 2) : Padded(year, 4);
        break;
      }
      case 'h':
        out += Padded(value.hour, pad);
        break;
      case 'n':
        out += Padded(value.minute, pad);
        break;
      case 's':
        out += Padded(value.second, pad);
        break;
      default:
        out += piece.text;
        continue;  // "mm" means minutes also after literals behind "hh"
    }
    afterHour = piece.letter == 'h';
  }
  return out;
}

}  // namespace

std::string GermanFormat(const Variant& value, std::string_view pattern) {
  const auto* text = value.If<std::string>();
  std::optional<double> number;
  if (const auto* held = value.If<double>()) number = *held;
  if (const auto* held = value.If<std::int32_t>()) number = *held;

  const std::vector<Piece> numberPieces = Split(pattern, kNumberLetters);
  bool isNumberPattern = false;
  for (const Piece& piece : numberPieces)
    isNumberPattern = isNumberPattern || piece.letter == '#' || piece.letter == '0';
  if (isNumberPattern) {
    if (!number && text) number = ParseNumber(*text);
    if (number && std::isfinite(*number)) return FormatNumber(*number, numberPieces);
    return ToText(value);
  }

  std::optional<DateTime> dateTime;
  if (text) dateTime = ParseDateTime(*text);
  if (number) dateTime = FromDayNumber(*number);
  if (!dateTime) return ToText(value);
  return FormatDateTime(*dateTime, Split(pattern, "dmyhns"));
}

}  // namespace kvo
