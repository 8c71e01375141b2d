#include "host/qt/ShownText.h"

#include "host/qt/QtText.h"

namespace kvo {
namespace {

constexpr char16_t kSymbolForBreak = 0x21B5;
constexpr char16_t kReplacement = 0xFFFD;

// Replaces a unit that has another meaning in a QTextDocument.
char16_t StandIn(char16_t unit) {
  switch (unit) {
    case 0:
      return kSymbolForNull;
    case '\r':
      return '\n';
    case 0x2028:
    case 0x2029:
      return kSymbolForBreak;
    case 0xFDD0:  // Qt's marks for the start and end of a frame, and for an embedded object
    case 0xFDD1:
    case 0xFFFC:
      return kReplacement;
    default:
      return unit;
  }
}

std::u16string Show(std::string_view character, Lines lines) {
  std::u16string units = ToQt(character).toStdU16String();
  if (lines == Lines::many)
    for (char16_t& unit : units) unit = StandIn(unit);
  return units;
}

std::string Typed(std::u16string_view units, Lines lines) {
  QString text;
  for (const QChar unit : units) {
    const bool breaks = unit == QLatin1Char('\n') || unit == QChar::LineSeparator ||
                        unit == QChar::ParagraphSeparator;
    if (breaks && lines == Lines::many)
      text += QLatin1String("\r\n");
    else
      text += unit;
  }
  return FromQt(text);
}

}  // namespace

const TextStyle kQtStyle = {.show = Show, .joinsCrLfInLine = false, .typed = Typed};

}  // namespace kvo
