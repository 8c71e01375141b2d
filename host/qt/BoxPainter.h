// Draws design-time boxes.
#pragma once

#include <QPaintDevice>
#include <QPainter>
#include <QRectF>

#include "common/frame/DesignBox.h"

namespace kvo {

// The size of a box at the device's resolution; nullptr: at 96 dots per inch.
QSizeF BoxSize(const Box& box, const QPaintDevice* device);

// Draws the box into `target`, which has its proportions, in the colours of the desktop.
void PaintBox(QPainter& painter, const Box& box, const QRectF& target, bool selected);

}  // namespace kvo
