// Converts texts between the core (UTF-8) and Qt (UTF-16).
#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace kvo {

// Invalid bytes become U+FFFD.
QString ToQt(std::string_view utf8);
// Unpaired surrogates become U+FFFD.
std::string FromQt(const QString& text);

// Doubles each "&", for widgets that would take it as the mark of an access key.
QString ToQtCaption(std::string_view utf8);

// A tooltip that shows the text literally. Otherwise, Qt renders text that looks like markup,
// including pictures from the disk.
QString ToolTipOf(const QString& text);

}  // namespace kvo
