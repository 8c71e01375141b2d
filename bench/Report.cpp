#include "bench/Report.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <stdexcept>

namespace kvo::bench {
namespace {

std::string Line(const std::vector<std::string>& cells) {
  std::string line = "|";
  for (const std::string& cell : cells) line += ' ' + cell + " |";
  return line + '\n';
}

std::string WithUnit(double value, double step, const std::vector<std::string_view>& units) {
  std::size_t unit = 0;
  while (value >= step && unit + 1 < units.size()) {
    value /= step;
    ++unit;
  }
  return Figure(value) + ' ' + std::string(units[unit]);
}

}  // namespace

void Report::Heading(std::string_view text) { text_ += "\n## " + std::string(text) + "\n"; }

void Report::Paragraph(std::string_view text) { text_ += '\n' + std::string(text) + '\n'; }

void Report::Table(const std::vector<std::string>& header,
                   const std::vector<std::vector<std::string>>& rows) {
  text_ += '\n' + Line(header);
  std::vector<std::string> ruler(header.size(), "---:");
  ruler[0] = "---";
  text_ += Line(ruler);
  for (const auto& row : rows) {
    if (row.size() != header.size()) throw std::logic_error("the row does not match the header");
    text_ += Line(row);
  }
}

std::string Report::AtMost(double figure, double limit) { return Judged(figure, figure <= limit); }
std::string Report::AtLeast(double figure, double limit) { return Judged(figure, figure >= limit); }

std::string Report::Judged(double figure, bool met) {
  ++goals_;
  if (met) return Figure(figure);
  ++missed_;
  return "**" + Figure(figure) + "**";
}

std::string Figure(double figure) {
  const double size = std::fabs(figure);
  int decimals = 0;
  if (size > 0 && size < 99.95) decimals = size < 9.995 ? 2 : 1;
  if (size > 0 && size < 0.0995) decimals = 2 - static_cast<int>(std::floor(std::log10(size)));
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%.*f", decimals, figure);
  return text.data();
}

std::string Duration(double seconds) {
  return WithUnit(seconds * 1e9, 1000, {"ns", "µs", "ms", "s"});
}
std::string Size(double bytes) { return WithUnit(bytes, 1000, {"B", "KB", "MB", "GB"}); }

}  // namespace kvo::bench
