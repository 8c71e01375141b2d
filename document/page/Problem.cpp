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

std::string Describe(const Problem& problem, std::string_view file, Language language) {
  const bool error = problem.severity == Severity::error;
  std::string text(file);
  text +=
      ':' + std::to_string(problem.place.line) + ':' + std::to_string(problem.place.column) + ": ";
  text += language == Language::german ? (error ? "Fehler: " : "Warnung: ")
                                       : (error ? "error: " : "warning: ");
  if (!problem.control.empty()) {
    text += problem.control;
    if (!problem.id.empty()) text += " \"" + problem.id + '"';
    text += ": ";
  }
  text += problem.message.In(language);
  text += " [";
  text += problem.rule;
  text += ']';
  return text;
}

}  // namespace kvo::page
