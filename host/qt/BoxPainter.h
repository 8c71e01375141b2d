// Draws design-time boxes.
#pragma once

#include <QGuiApplication>
#include <QPaintDevice>
#include <QPainter>
#include <QPalette>
#include <QRectF>

#include "common/frame/DesignBox.h"

namespace kvo {

// The size of a box at the device's resolution, or at 96 dpi for nullptr.
QSizeF BoxSize(const Box& box, const QPaintDevice* device);

// Draws the box into `target`, which has the same proportions.
void PaintBox(QPainter& painter, const Box& box, const QRectF& target, bool selected,
              const QPalette& palette = QGuiApplication::palette());

}  // namespace kvo
