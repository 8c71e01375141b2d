// Questions with two answers, which say what they do.
#pragma once

#include <QString>

#include "common/Localized.h"

class QWidget;

namespace kvo::editor {

enum class Default { yes, no };

// Escape and the window's button are the same as `no`.
bool Confirm(QWidget* parent, const QString& question, const Localized& yes, const Localized& no,
             Default preset);

}  // namespace kvo::editor
