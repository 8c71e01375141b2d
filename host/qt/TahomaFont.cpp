#include "host/qt/TahomaFont.h"

#include <QByteArray>
#include <QFile>
#include <QFontDatabase>

#include "host/qt/QtText.h"

namespace kvo {
namespace {

constexpr std::string_view kTahoma = "Tahoma";

unsigned Number(const QByteArray& font, qsizetype at, int bytes) {
  unsigned number = 0;
  for (int i = 0; i < bytes; ++i) number = number << 8U | static_cast<unsigned char>(font[at + i]);
  return number;
}

// Returns the offset of a table in a font, or 0. With `hide`, also disables its directory entry.
qsizetype FindTable(QByteArray& font, const char* tag, bool hide) {
  constexpr qsizetype kDirectory = 12;
  constexpr qsizetype kEntry = 16;
  if (font.size() < kDirectory) return 0;
  const qsizetype end = kDirectory + kEntry * static_cast<qsizetype>(Number(font, 4, 2));
  for (qsizetype at = kDirectory; at < end && at + kEntry <= font.size(); at += kEntry) {
    if (font.sliced(at, 4) != tag) continue;
    if (hide) font[at] = '-';
    return static_cast<qsizetype>(Number(font, at + 8, 4));
  }
  return 0;
}

void Put(QByteArray& font, qsizetype at, int number) {
  font[at] = static_cast<char>(number >> 8);
  font[at + 1] = static_cast<char>(number);
}

// Wine's file has different metrics for Windows and for other systems, and the latter cut the dots
// off umlauts. Sets Windows' line height: an ascent of 11 and a descent of 2 pixels for 8.25 point
// at 96 dpi. Hides the file's bitmaps, which exist in one size only and have metrics of their own.
void SetWindowsMetrics(QByteArray& font) {
  constexpr qsizetype kAscent = 68;  // in table OS/2; descent and line gap follow
  constexpr int kUnitsPerEm = 2048;
  FindTable(font, "EBLC", true);
  FindTable(font, "EBDT", true);
  const qsizetype table = FindTable(font, "OS/2", false);
  if (table == 0 || font.size() < table + kAscent + 6) return;
  Put(font, table + kAscent, kUnitsPerEm);
  Put(font, table + kAscent + 2, -2 * kUnitsPerEm / 11);
  Put(font, table + kAscent + 4, 0);
}

// Ignores the bold file: its letters are wider but no bolder. Qt synthesises bold ones.
void LoadFromWine() {
  QFile file(QStringLiteral("/usr/share/wine/fonts/tahoma.ttf"));
  if (!file.open(QIODevice::ReadOnly)) return;
  QByteArray font = file.readAll();
  SetWindowsMetrics(font);
  QFontDatabase::addApplicationFontFromData(font);
}

}  // namespace

void LoadTahoma() {
  static const bool loaded = [] {
    if (!QFontDatabase::families().contains(ToQt(kTahoma))) LoadFromWine();
    return true;
  }();
  Q_UNUSED(loaded);
}

QFont QtFont(const Font& font) {
  static const bool hasTahoma = QFontDatabase::hasFamily(ToQt(kTahoma));
  constexpr qreal kLetterSpacing = 96;  // percent, because substitutes are a little wider
  QFont result;
  if (font.family == kTahoma) {
    result.setFamilies({ToQt(kTahoma), QStringLiteral("DejaVu Sans Condensed"),
                        QStringLiteral("Noto Sans"), QStringLiteral("Liberation Sans")});
    result.setStyleHint(QFont::SansSerif);
    if (!hasTahoma) result.setLetterSpacing(QFont::PercentageSpacing, kLetterSpacing);
  } else {
    result.setFamilies(
        {ToQt(font.family), QStringLiteral("Liberation Mono"), QStringLiteral("DejaVu Sans Mono")});
    result.setStyleHint(QFont::Monospace);
  }
  result.setPointSizeF(font.points);
  result.setBold(font.weight == FontWeight::bold);
  return result;
}

}  // namespace kvo
