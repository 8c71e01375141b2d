// Texts on their way between the core (UTF-8) and Qt (UTF-16).
#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace kvo {

// Invalid bytes become U+FFFD.
QString ToQt(std::string_view utf8);
// Unpaired surrogates become U+FFFD.
std::string FromQt(const QString& text);

// A caption for widgets that take "&" for the mark of an access key: there it is a character.
QString ToQtCaption(std::string_view utf8);

// A tool tip that shows the text as it stands: Qt renders whatever begins like markup, pictures
// from the disk included.
QString ToolTipOf(const QString& text);

}  // namespace kvo
