// Defines GermanFormat: patterns by a regular expression, dates by C's calendar, numbers by their
// written digits.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <initializer_list>
#include <optional>
#include <regex>
#include <string>
#include <utility>
#include <vector>

#include "common/values/Floating.h"
#include "common/values/Variant.h"
#include "tests/core/ValueDefinitions.h"

namespace kvo {

// One character of a pattern with a meaning, or literal text (letter 0).
struct PatternMark {
  char letter;
  std::string text;
};

inline std::regex MarksByDefinition(const std::string& letters) {
  return std::regex("\\\\([\\s\\S])|\"([^\"]*)\"?|([" + letters + "])|([\\s\\S])",
                    std::regex::icase);
}

inline std::vector<PatternMark> PatternByDefinition(const std::string& pattern,
                                                    const std::regex& mark) {
  std::vector<PatternMark> marks;
  for (std::sregex_iterator at(pattern.begin(), pattern.end(), mark), end; at != end; ++at) {
    const std::string letter = LowerByDefinition((*at)[3]);
    if (!letter.empty())
      marks.push_back({letter[0], letter});
    else
      marks.push_back({0, (*at)[1].str() + (*at)[2].str() + (*at)[4].str()});
  }
  return marks;
}

inline std::string FormatNumberByDefinition(double number, const std::vector<PatternMark>& marks) {
  std::string asked;
  for (const PatternMark& mark : marks)
    if (mark.letter != 0) asked += mark.text;
  const std::string askedWhole = asked.substr(0, asked.find('.'));
  std::string askedDecimals = asked.substr(askedWhole.size());
  std::erase_if(askedDecimals, [](char c) { return c == '.' || c == ','; });
  std::string always = askedWhole.substr(std::min(askedWhole.find('0'), askedWhole.size()));
  std::erase(always, ',');

  // The number's digits and the position of its point: all digits of a whole number, otherwise the
  // shortest that read back as it.
  char buffer[400];
  std::string digits;
  std::size_t whole = 0;
  if (number == std::trunc(number)) {
    std::snprintf(buffer, sizeof buffer, "%.0f", std::abs(number));
    digits = buffer;
    whole = digits.size();
  } else {
    digits = ShortestFixedText(std::abs(number));
    whole = digits.find('.');
    std::erase(digits, '.');
  }
  const std::size_t kept = whole + askedDecimals.size();
  digits.resize(std::max({digits.size(), whole, kept + 1}), '0');
  const bool up = digits[kept] >= '5';
  digits = "0" + digits.substr(0, kept);
  if (up) {
    std::size_t last = digits.find_last_not_of('9');
    ++digits[last];
    while (++last < digits.size()) digits[last] = '0';
  }
  const bool negative = number < 0 && digits.find_first_not_of('0') != std::string::npos;

  std::string front = digits.substr(0, whole + 1);
  std::string behind = digits.substr(whole + 1);
  while (front.starts_with('0')) front.erase(0, 1);
  while (front.size() < always.size()) front.insert(0, "0");
  while (behind.ends_with('0') && askedDecimals[behind.size() - 1] == '#') behind.pop_back();
  if (askedWhole.find(',') != std::string::npos)
    for (auto at = static_cast<std::ptrdiff_t>(front.size()) - 3; at > 0; at -= 3)
      front.insert(static_cast<std::size_t>(at), ".");
  std::string text = (negative ? "-" : "") + front;
  if (asked.find('.') != std::string::npos) text += "," + behind;

  std::string out;
  bool written = false;
  for (const PatternMark& mark : marks) {
    if (mark.letter == 0)
      out += mark.text;
    else if (!std::exchange(written, true))
      out += text;
  }
  return out;
}

inline std::optional<std::tm> CalendarDay(int day, int month, int year) {
  std::tm date{};
  date.tm_mday = day;
  date.tm_mon = month - 1;
  date.tm_year = year - 1900;
  const std::time_t seconds = timegm(&date);
  gmtime_r(&seconds, &date);
  const bool exists =
      date.tm_mday == day && date.tm_mon == month - 1 && date.tm_year == year - 1900;
  return exists && year >= 100 ? std::optional(date) : std::nullopt;
}

inline std::optional<std::tm> DateByDefinition(const std::string& text) {
  static const std::string date = "([0-9]{1,2})\\.([0-9]{1,2})\\.([0-9]{1,4})";
  static const std::string time = "([0-9]{1,2}):([0-9]{1,2})(?::([0-9]{1,2}))?";
  static const std::regex either(date + "|" + date + " " + time + "|" + time);
  std::smatch found;
  const std::string plain = WithoutBlanks(text);
  if (!std::regex_match(plain, found, either)) return std::nullopt;
  const auto number = [&](std::initializer_list<std::size_t> groups) {
    int value = 0;
    for (const std::size_t group : groups)
      if (found[group].matched) value = std::stoi(found.str(group));
    return value;
  };
  const bool dated = found[1].matched || found[4].matched;
  std::optional<std::tm> value = dated ? CalendarDay(number({1, 4}), number({2, 5}), number({3, 6}))
                                       : CalendarDay(30, 12, 1899);
  if (!value) return std::nullopt;
  value->tm_hour = number({7, 10});
  value->tm_min = number({8, 11});
  value->tm_sec = number({9, 12});
  if (value->tm_hour > 23 || value->tm_min > 59 || value->tm_sec > 59) return std::nullopt;
  return value;
}

inline std::optional<std::tm> DateByDefinition(double number) {
  constexpr double kUnixDay = 25569;  // 01.01.1970
  if (!(std::abs(number) < 1e7)) return std::nullopt;
  const double day = std::trunc(number);
  const auto seconds = static_cast<std::time_t>((day - kUnixDay) * 86400) +
                       std::lround(std::abs(number - day) * 86400);
  std::tm value{};
  gmtime_r(&seconds, &value);
  const int year = value.tm_year + 1900;
  if (year < 100 || year > 9999) return std::nullopt;
  return value;
}

inline std::string FormatDateByDefinition(const std::tm& value,
                                          const std::vector<PatternMark>& marks) {
  static const char* const days[] = {"Sonntag",    "Montag",  "Dienstag", "Mittwoch",
                                     "Donnerstag", "Freitag", "Samstag"};
  static const char* const months[] = {"Januar",    "Februar", "März",     "April",
                                       "Mai",       "Juni",    "Juli",     "August",
                                       "September", "Oktober", "November", "Dezember"};
  static const char* const shortMonths[] = {"Jan", "Feb", "Mrz", "Apr", "Mai", "Jun",
                                            "Jul", "Aug", "Sep", "Okt", "Nov", "Dez"};
  const auto digits = [](std::size_t least, int number) {
    char text[16];
    std::snprintf(text, sizeof text, "%0*d", static_cast<int>(least), number);
    return std::string(text);
  };
  std::string out;
  bool afterHour = false;
  for (std::size_t at = 0; at < marks.size();) {
    const char letter = marks[at].letter;
    if (letter == 0) {
      out += marks[at++].text;
      continue;
    }
    std::size_t size = 0;
    for (; at < marks.size() && marks[at].letter == letter; ++at) ++size;
    const std::size_t least = size < 2 ? 1 : 2;
    if (letter == 'd' && size > 2)
      out += std::string(days[value.tm_wday]).substr(0, size == 3 ? 2 : std::string::npos);
    else if (letter == 'd')
      out += digits(least, value.tm_mday);
    else if (letter == 'n' || (letter == 'm' && afterHour))
      out += digits(least, value.tm_min);
    else if (letter == 'm' && size > 2)
      out += (size == 3 ? shortMonths : months)[value.tm_mon];
    else if (letter == 'm')
      out += digits(least, value.tm_mon + 1);
    else if (letter == 'y')
      out += size < 3 ? digits(2, (value.tm_year + 1900) % 100) : digits(4, value.tm_year + 1900);
    else
      out += digits(least, letter == 'h' ? value.tm_hour : value.tm_sec);
    afterHour = letter == 'h';
  }
  return out;
}

inline std::string GermanFormatByDefinition(const Variant& value, const std::string& pattern) {
  const auto* text = value.If<std::string>();
  std::optional<double> number;
  if (const auto* held = value.If<double>()) number = *held;
  if (const auto* held = value.If<std::int32_t>()) number = *held;

  static const std::regex numberMark = MarksByDefinition("#0,.");
  static const std::regex dateMark = MarksByDefinition("dmyhns");
  const std::vector<PatternMark> marks = PatternByDefinition(pattern, numberMark);
  bool wantsNumber = false;
  for (const PatternMark& mark : marks)
    wantsNumber = wantsNumber || mark.letter == '#' || mark.letter == '0';
  if (wantsNumber) {
    if (text) number = NumberByDefinition(*text);
    if (!number || !std::isfinite(*number)) return ToText(value);
    return FormatNumberByDefinition(*number, marks);
  }
  std::optional<std::tm> date;
  if (text) date = DateByDefinition(*text);
  if (number) date = DateByDefinition(*number);
  if (!date) return ToText(value);
  return FormatDateByDefinition(*date, PatternByDefinition(pattern, dateMark));
}

}  // namespace kvo
