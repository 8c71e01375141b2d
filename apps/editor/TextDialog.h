// Edits a text of several lines in its own window. Keeps untouched parts as they are, including
// kinds of line breaks and invisible characters.
#pragma once

#include <QWidget>
#include <optional>
#include <string>
#include <vector>

#include "apps/editor/ToolboxFile.h"

namespace kvo::editor {

// Returns nullopt when cancelled.
std::optional<std::string> EditText(const QString& title, const std::string& text, QWidget* parent);
// The same for HTML, with syntax colours. Each of `fields` inserts the runtime text of a new
// control.
std::optional<std::string> EditHtml(const QString& title, const std::string& html,
                                    std::vector<Tool> fields, QWidget* parent);

}  // namespace kvo::editor
