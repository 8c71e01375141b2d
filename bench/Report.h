// The document that a run writes: headings, sentences, tables and, for figures with a goal, whether
// it was met.
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
  // `cells` of each row are as many as there are in `header`.
  void Table(const std::vector<std::string>& header,
             const std::vector<std::vector<std::string>>& rows);

  // A table's cell for a figure that is to be at most, or at least, so much: a missed goal is set
  // in bold and counted.
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

// Three significant digits at most: 0.0123, 1.23, 12.3, 123, 12345.
std::string Figure(double figure);
// With the unit that suits: ns, µs, ms or s; bytes, KB or MB.
std::string Duration(double seconds);
std::string Size(double bytes);

}  // namespace kvo::bench
