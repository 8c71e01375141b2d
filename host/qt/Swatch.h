// The small square that shows the colour which a row of a property grid holds.
#pragma once

#include <QColor>
#include <QPixmap>
#include <QWidget>
#include <optional>

#include "common/forms/FormPropertyGrid.h"

namespace kvo {

// Nothing when the row is none for colours, or holds no colour.
std::optional<QColor> SwatchOf(const PropertyGridItem& item);

int SwatchSize(const QWidget& on);
QPixmap SwatchPicture(const QColor& color, const QWidget& on);

}  // namespace kvo
