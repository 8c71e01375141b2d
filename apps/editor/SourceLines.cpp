#include "apps/editor/SourceLines.h"

#include <QRegularExpression>
#include <algorithm>

#include "host/qt/QtText.h"

namespace kvo::editor {

void SourceLines::Translate(page::Problem& problem) {
  problem.place = places_.PlaceOf(places_.PositionOf(problem.offset));
  for (const std::string_view rule : {page::rule::misplacedControl, page::rule::strayEnd,
                                      page::rule::nestedControl, page::rule::missingEnd})
    if (problem.rule == rule)
      problem.message = {Translated(problem.message.german), Translated(problem.message.english)};
}

std::string SourceLines::Translated(const std::string& message) {
  // The first match is right: a runtime text comes after the line.
  static const QRegularExpression kLine("\\b(?:Zeile|line) (\\d+)(?=[:)]| beginnt| and )");
  QString text = ToQt(message);
  const QRegularExpressionMatch match = kLine.match(text);
  if (!match.hasMatch()) return message;
  text.replace(match.capturedStart(1), match.capturedLength(1),
               QString::number(LineOf(match.captured(1).toULongLong())));
  return FromQt(text);
}

std::size_t SourceLines::LineOf(std::size_t fileLine) {
  if (fileLines_.empty()) {
    fileLines_.push_back(0);
    for (std::size_t at = page_.find_first_of("\r\n"); at != std::string_view::npos;
         at = page_.find_first_of("\r\n", fileLines_.back()))
      fileLines_.push_back(at + (page_.substr(at, 2) == "\r\n" ? 2 : 1));
  }
  const std::size_t begin = fileLines_[std::min(fileLine, fileLines_.size()) - 1];
  return places_.PlaceOf(places_.PositionOf(begin)).line;
}

}  // namespace kvo::editor
