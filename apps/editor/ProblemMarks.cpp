#include "apps/editor/ProblemMarks.h"

#include <algorithm>

#include "apps/editor/Words.h"
#include "host/qt/QtText.h"

namespace kvo::editor {

QString MessageOf(const page::Problem& problem) {
  return ToQt(problem.message.In(UserLanguage())) + " [" + ToQt(problem.rule) + ']';
}

QString TipOf(const page::Problem& problem) {
  if (!problem.fix) return MessageOf(problem);
  return MessageOf(problem) + "\n\n" +
         Text(words::kFixTip, {ToQt(problem.fix->title.In(UserLanguage()))});
}

QString LabelledTipOf(const page::Problem& problem) {
  const bool isError = problem.severity == page::Severity::error;
  return Text(isError ? words::kError : words::kWarning) + ": " + TipOf(problem);
}

std::vector<ProblemMark> MarksOf(const std::vector<ProblemEntry>& problems,
                                 const design::Rendering& rendering) {
  constexpr std::size_t kMost = 300;  // as in the source
  std::vector<const ProblemEntry*> marked;
  for (const ProblemEntry& entry : problems) marked.push_back(&entry);
  const auto isError = [](const ProblemEntry* entry) {
    return entry->problem.severity == page::Severity::error;
  };
  std::stable_partition(marked.begin(), marked.end(), isError);
  marked.resize(std::min(marked.size(), kMost));
  std::vector<ProblemMark> marks;
  for (const ProblemEntry* entry : marked) {
    const auto position = static_cast<std::size_t>(entry->position);
    ProblemMark& mark = marks.emplace_back();
    mark.isError = isError(entry);
    mark.tip = LabelledTipOf(entry->problem);
    if (const auto box = rendering.BoxAt(position)) mark.box = static_cast<int>(*box);
    mark.place = rendering.PlaceOf(position).value_or(design::RenderedPlace());
  }
  return marks;
}

}  // namespace kvo::editor
