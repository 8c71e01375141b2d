#include "document/page/Problem.h"

#include <map>
#include <utility>

namespace kvo::page {
namespace {

// The most problems to show of one rule in one page. After fixing so many, the user checks again.
constexpr std::size_t kMostTold = 10;

// Formats a number with thousands separators.
std::string Grouped(std::size_t number, char separator) {
  std::string text = std::to_string(number);
  for (std::size_t at = text.size(); at > 3; at -= 3) text.insert(at - 3, 1, separator);
  return text;
}

}  // namespace

Problems Told(const Problems& problems) {
  using Kind = std::pair<std::string_view, Severity>;
  struct Count {
    std::size_t told = 0;
    std::size_t more = 0;  // its index in the result
  };
  std::map<Kind, Count> counts;
  Problems told;
  for (const Problem& problem : problems) {
    Count& count = counts[{problem.rule, problem.severity}];
    if (count.told < kMostTold) {
      told.push_back(problem);
    } else if (count.told == kMostTold) {
      count.more = told.size();
      told.push_back(
          {problem.severity, problem.rule, problem.place, {}, {}, {}, problem.offset, 1});
    } else {
      ++told[count.more].more;
    }
    ++count.told;
  }
  for (Problem& problem : told)
    if (problem.more > 0)
      problem.message = {"... und " + Grouped(problem.more, '.') + " weitere dieser Art.",
                         "... and " + Grouped(problem.more, ',') + " more of this kind."};
  return told;
}

std::string DescribeAt(std::string_view file, const Place& place, std::string_view label,
                       std::string_view control, std::string_view id, std::string_view message) {
  std::string text(file);
  text += ':' + std::to_string(place.line) + ':' + std::to_string(place.column) + ": ";
  text.append(label) += ": ";
  if (!control.empty()) {
    text += control;
    if (!id.empty()) text.append(" \"").append(id) += '"';
    text += ": ";
  }
  return text.append(message);
}

std::string Describe(const Problem& problem, std::string_view file, Language language) {
  constexpr Localized kError{"Fehler", "error"};
  constexpr Localized kWarning{"Warnung", "warning"};
  const Localized& label = problem.severity == Severity::error ? kError : kWarning;
  return DescribeAt(file, problem.place, label.In(language), problem.control, problem.id,
                    problem.message.In(language)) +
         " [" + std::string(problem.rule) + ']';
}

}  // namespace kvo::page
