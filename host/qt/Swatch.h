// The small square that shows a colour row's value.
#pragma once

#include <QPixmap>
#include <QWidget>

#include "common/forms/PropertyRows.h"

namespace kvo {

int SwatchSize(const QWidget& on);
QPixmap SwatchPicture(const Swatch& color, const QWidget& on);

}  // namespace kvo
