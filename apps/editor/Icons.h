// The editor's own icons: strokes in the text colour, light or dark.
#pragma once

#include <QIcon>

namespace kvo::editor {

// Returns the icon `resources/icons/NAME.svg`, whose `currentColor` follows the palette.
QIcon LineIcon(const QString& name);

}  // namespace kvo::editor
