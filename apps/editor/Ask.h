// Questions whose answers say what they do.
#pragma once

#include <QMessageBox>
#include <QString>

#include "common/values/Localized.h"

namespace kvo::editor {

// A message box under the program's title. Its text is never taken for markup: names of files and
// texts of pages may hold anything.
class PlainMessageBox final : public QMessageBox {
 public:
  PlainMessageBox(Icon icon, const QString& text, QWidget* parent);
};

enum class Default { yes, no };

// Escape and the window's button are the same as `no`.
bool Confirm(QWidget* parent, const QString& question, const Localized& yes, const Localized& no,
             Default preset);

}  // namespace kvo::editor
