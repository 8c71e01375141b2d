#include "apps/editor/Mending.h"

#include <algorithm>
#include <chrono>

#include "apps/editor/ProblemMarks.h"
#include "apps/editor/Words.h"
#include "host/qt/QtText.h"

namespace kvo::editor {
namespace {

constexpr std::chrono::seconds kNoteTime(8);

}  // namespace

Mending::Mending(SessionUser& user, PageDocument& page, SourceEdit& source, DesignEditing& design,
                 ProblemsPanel& list)
    : user_(user), page_(page), source_(source), design_(design), list_(list) {
  list_.onFix = [this] { Fix(); };
}

void Mending::Analysed(std::shared_ptr<const Analysis> analysis) {
  analysis_ = std::move(analysis);
  if (!IsCurrent()) return;
  std::vector<SourceEdit::Mark> marks;
  for (const ProblemEntry& entry : analysis_->problems)
    marks.push_back({entry.position, entry.end, entry.problem.severity == page::Severity::error});
  source_.MarkPlaces(std::move(marks));
}

bool Mending::IsCurrent() const {
  return analysis_ != nullptr && analysis_->revision == page_.Revision();
}

void Mending::Step(bool backwards) {
  if (!IsCurrent() || analysis_->problems.empty()) return;
  const auto& problems = analysis_->problems;
  const int caret = source_.textCursor().selectionStart();
  // Several problems may be at one place; the list knows which of them was shown last.
  const int chosen = list_.ChosenRow();
  const auto count = static_cast<int>(problems.size());
  const auto at = [&](int row) { return problems[static_cast<std::size_t>(row)].position; };
  int row = 0;
  if (chosen >= 0 && chosen < count && at(chosen) == caret) {
    row = backwards ? chosen - 1 : chosen + 1;
  } else {
    const auto next = std::ranges::lower_bound(problems, caret, {}, &ProblemEntry::position);
    row = static_cast<int>(next - problems.begin());
    if (backwards) --row;
  }
  row = (row + count) % count;
  list_.Choose(row);
  Reveal(at(row));
  user_.Note(LabelledTipOf(problems[static_cast<std::size_t>(row)].problem).simplified(),
             kNoteTime);
}

void Mending::Reveal(int position) {
  if (design_.IsInUse())
    design_.Reveal(position);
  else
    source_.Reveal(position);
}

const ProblemEntry* Mending::Meant() const {
  const auto& problems = analysis_->problems;
  const int row = list_.ChosenRow();
  const bool hasRow = row >= 0 && row < static_cast<int>(problems.size());
  const ProblemEntry* const chosen = hasRow ? &problems[static_cast<std::size_t>(row)] : nullptr;
  if (list_.hasFocus()) return chosen;
  const QTextCursor cursor = source_.textCursor();
  const auto isHere = [&cursor](const ProblemEntry& entry) {
    return entry.position <= cursor.selectionEnd() && cursor.selectionStart() <= entry.end;
  };
  if (chosen != nullptr && isHere(*chosen)) return chosen;
  const ProblemEntry* here = nullptr;
  for (const ProblemEntry& entry : problems)
    if (isHere(entry) && (here == nullptr || (!here->problem.fix && entry.problem.fix)))
      here = &entry;
  return here;
}

void Mending::Fix() {
  if (!IsCurrent()) return user_.Note(Text(words::kFixLater), kNoteTime);
  const ProblemEntry* const entry = Meant();
  if (entry == nullptr) return user_.Note(Text(words::kNoProblemHere), kNoteTime);
  if (!entry->problem.fix) return user_.Note(Text(words::kNoFix), kNoteTime);
  const page::Fix fix = *entry->problem.fix;  // the analysis may end with the change
  const int position = entry->position;
  const PageText& content = page_.Content();
  page_.ReplaceAll(PageText(page::Applied(content.Bytes(), fix.edits), content.LineBreak()),
                   ToQt(fix.title.In(UserLanguage())));
  Reveal(position);
}

}  // namespace kvo::editor
