// Builds the report of a run: headings, paragraphs, tables and, for figures with a goal, whether it
// was met.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kvo::bench {

class Report {
 public:
  void Heading(std::string_view text);
  void Paragraph(std::string_view text);
  // Each row has as many cells as `header`.
  void Table(const std::vector<std::string>& header,
             const std::vector<std::vector<std::string>>& rows);

  // Returns the table cell for a figure with an upper or lower limit. Counts a missed goal and sets
  // it in bold.
  std::string AtMost(double figure, double limit);
  std::string AtLeast(double figure, double limit);

  int Goals() const { return goals_; }
  int Missed() const { return missed_; }
  const std::string& Text() const { return text_; }

 private:
  std::string Judged(double figure, bool met);

  std::string text_;
  int goals_ = 0;
  int missed_ = 0;
};

// Formats with at most three significant digits: 0.0123, 1.23, 12.3, 123, 12345.
std::string Figure(double figure);
// Format with the best unit: ns, µs, ms or s; bytes, KB or MB.
std::string Duration(double seconds);
std::string Size(double bytes);

}  // namespace kvo::bench
