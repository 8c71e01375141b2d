// What the editor says of problems, and where the design view marks them.
#pragma once

#include <vector>

#include "apps/editor/Analysis.h"

namespace kvo::editor {

// The message and the rule.
QString MessageOf(const page::Problem& problem);
// The same, and how to make the fix.
QString TipOf(const page::Problem& problem);
// Begins with "error" or "warning".
QString LabelledTipOf(const page::Problem& problem);

// Marks the box of a control, and the page's own text at its rendered place. Only the first of very
// many, errors before warnings.
std::vector<ProblemMark> MarksOf(const std::vector<ProblemEntry>& problems,
                                 const design::Rendering& rendering);

}  // namespace kvo::editor
