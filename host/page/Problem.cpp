#include "host/page/Problem.h"

namespace kvo::page {

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
