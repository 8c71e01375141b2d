// Edits a text of several lines in its own window. Keeps untouched parts as they are, including
// kinds of line breaks and invisible characters.
#pragma once

#include <QWidget>
#include <optional>
#include <string>

namespace kvo::editor {

// Returns nullopt when cancelled.
std::optional<std::string> EditText(const QString& title, const std::string& text, QWidget* parent);

}  // namespace kvo::editor
