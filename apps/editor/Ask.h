// Asks the user in a message box, under the program's title. The text is never taken for markup:
// names of files and texts of pages may hold anything.
#pragma once

#include "apps/editor/Question.h"

class QWidget;

namespace kvo::editor {

// The number of the answer.
std::size_t Ask(QWidget* parent, const Question& question);

bool Confirm(QWidget* parent, const QString& question, const Localized& yes, const Localized& no,
             Default preset);

}  // namespace kvo::editor
