#include "apps/editor/Colors.h"

#include <QApplication>
#include <algorithm>
#include <cmath>

namespace kvo::editor {
namespace {

struct ColorRow {
  QPalette::ColorRole role;
  const char* light;
  const char* dark;
};

constexpr ColorRow kColorRows[] = {
    {QPalette::Window, "#f3f4f5", "#262626"},
    {QPalette::WindowText, "#1d1f22", "#e8e8e8"},
    {QPalette::Base, "#ffffff", "#1c1c1c"},
    {QPalette::AlternateBase, "#f1f5fa", "#25282c"},
    {QPalette::Text, "#1d1f22", "#e8e8e8"},
    {QPalette::PlaceholderText, "#5c6167", "#a8a8a8"},
    {QPalette::Button, "#f0f1f2", "#2d2d2d"},
    {QPalette::ButtonText, "#1d1f22", "#e8e8e8"},
    {QPalette::BrightText, "#8f1414", "#ffb3b3"},
    {QPalette::ToolTipBase, "#ffffff", "#383838"},
    {QPalette::ToolTipText, "#1d1f22", "#e8e8e8"},
    {QPalette::Highlight, "#1b68b3", "#2c78c8"},
    {QPalette::HighlightedText, "#ffffff", "#ffffff"},
    {QPalette::Link, "#0b57a4", "#8ec2ff"},
    {QPalette::LinkVisited, "#6a3a96", "#cfa8f0"},
    {QPalette::Light, "#ffffff", "#4c4c4c"},
    {QPalette::Midlight, "#e6e8ea", "#404040"},
    {QPalette::Mid, "#d3d6da", "#232323"},  // the ground around a narrow page
    {QPalette::Dark, "#9ea3a9", "#191919"},
    {QPalette::Shadow, "#74797f", "#101010"},
};

constexpr ColorRow kDisabledColorRows[] = {
    {QPalette::WindowText, "#63676c", "#a8a8a8"},      {QPalette::Text, "#63676c", "#a8a8a8"},
    {QPalette::ButtonText, "#63676c", "#a8a8a8"},      {QPalette::Highlight, "#d8dbdf", "#454545"},
    {QPalette::HighlightedText, "#44484d", "#d0d0d0"},
};

double Luminance(const QColor& color) {
  const auto linear = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
         0.0722 * linear(color.blueF());
}

}  // namespace

double Contrast(const QColor& one, const QColor& other) {
  const auto [darker, lighter] = std::minmax({Luminance(one), Luminance(other)});
  return (lighter + 0.05) / (darker + 0.05);
}

Scheme SchemeOf(const QPalette& palette) {
  return palette.color(QPalette::Base).lightness() < 128 ? Scheme::dark : Scheme::light;
}

QPalette Colors(Scheme scheme) {
  const auto color = [scheme](const ColorRow& row) {
    return QColor(scheme == Scheme::dark ? row.dark : row.light);
  };
  QPalette palette;
  for (const ColorRow& row : kColorRows) palette.setColor(row.role, color(row));
  for (const ColorRow& row : kDisabledColorRows)
    palette.setColor(QPalette::Disabled, row.role, color(row));
  return palette;
}

void UseColors() {
  QApplication::setPalette(QPalette());  // the desktop's
  const QPalette desktop = QApplication::palette();
  constexpr double kBlackOnWhite = 20.9;
  const bool highContrast = Contrast(desktop.color(QPalette::Window),
                                     desktop.color(QPalette::WindowText)) >= kBlackOnWhite;
  if (!highContrast) QApplication::setPalette(Colors(SchemeOf(desktop)));
}

SourceColors ColorsOfSource(Scheme scheme) {
  if (scheme == Scheme::dark)
    return {"#7cb7ff", "#d7ba7d", "#b5e28c", "#a0a0a0", "#d9a0e8", "#ff9c9c", "#ff6b6b", "#ffb347"};
  return {"#0451a5", "#9c3f00", "#2f6f1f", "#63676c", "#7a2a8f", "#8b0000", "#d0021b", "#a85f00"};
}

}  // namespace kvo::editor
