// The editor's colours: one scheme for light desktops, one for dark ones.
#pragma once

#include <QColor>
#include <QPalette>

namespace kvo::editor {

enum class Scheme { light, dark };
Scheme SchemeOf(const QPalette& palette);
QPalette Colors(Scheme scheme);

// Gives the program the scheme that fits the desktop. Keeps the desktop's own colours when they are
// of high contrast, black and white.
void UseColors();

// Of HTML source.
struct SourceColors {
  QColor tagName;
  QColor attribute;
  QColor value;
  QColor quiet;      // comments, scripts and style sheets
  QColor reference;  // such as &auml;
  QColor odd;        // bytes that are no text
  QColor error;      // under the places of problems
  QColor warning;
};
SourceColors ColorsOfSource(Scheme scheme);

// From 1, equal, to 21, black on white, as WCAG 2 defines it.
double Contrast(const QColor& one, const QColor& other);

}  // namespace kvo::editor
