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

// Where a table begins in a font; its entry in the font's directory is put out of use if `hide`.
// 0 when there is none.
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

// Wine's file tells Windows and others different measures. Those for others cut the dots off an
// umlaut; here a line is as high as in Windows, 11 pixels and 2 of 8.25 point at 96 dots to the
// inch. The file's bitmaps, drawn for just one size, have measures of their own.
void MeasureAsWindowsDoes(QByteArray& font) {
  constexpr qsizetype kAscent = 68;  // in OS/2; descent and gap follow
  constexpr int kUnitsPerEm = 2048;
  FindTable(font, "EBLC", true);
  FindTable(font, "EBDT", true);
  const qsizetype table = FindTable(font, "OS/2", false);
  if (table == 0 || font.size() < table + kAscent + 6) return;
  Put(font, table + kAscent, kUnitsPerEm);
  Put(font, table + kAscent + 2, -2 * kUnitsPerEm / 11);
  Put(font, table + kAscent + 4, 0);
}

// The bold file is left alone: its letters are wider, but no bolder. Qt makes bold ones itself.
void LoadFromWine() {
  QFile file(QStringLiteral("/usr/share/wine/fonts/tahoma.ttf"));
  if (!file.open(QIODevice::ReadOnly)) return;
  QByteArray font = file.readAll();
  MeasureAsWindowsDoes(font);
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
  constexpr qreal kTighter = 96;  // percent; what stands in is a little wider
  QFont result;
  if (font.family == kTahoma) {
    result.setFamilies({ToQt(kTahoma), QStringLiteral("DejaVu Sans Condensed"),
                        QStringLiteral("Noto Sans"), QStringLiteral("Liberation Sans")});
    result.setStyleHint(QFont::SansSerif);
    if (!hasTahoma) result.setLetterSpacing(QFont::PercentageSpacing, kTighter);
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
