// A text of several lines, edited in a window of its own. What the user does not touch stays as it
// is: kinds of line breaks, characters that do not show.
#pragma once

#include <QWidget>
#include <optional>
#include <string>

namespace kvo::editor {

// nullopt when it was cancelled.
std::optional<std::string> EditText(const QString& title, const std::string& text, QWidget* parent);

}  // namespace kvo::editor
