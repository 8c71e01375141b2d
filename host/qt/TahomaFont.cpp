#include "host/qt/TahomaFont.h"

#include <QFileInfo>
#include <QFontDatabase>
#include <QPainterPath>
#include <QRawFont>

#include "host/qt/QtText.h"

namespace kvo {
namespace {

constexpr std::string_view kTahoma = "Tahoma";

constexpr char kFolder[] = "/usr/share/wine/fonts/";
constexpr char kRegular[] = "tahoma.ttf";
constexpr char kBold[] = "tahomabd.ttf";

double StemWidth(const QString& file) {
  constexpr double kSize = 1000;
  const QRawFont font(file, kSize);
  const auto glyphs = font.glyphIndexesForString("l");
  return glyphs.isEmpty() ? 0 : font.pathForGlyph(glyphs[0]).boundingRect().width();
}

void LoadFromWine() {
  const QString regular = QString(kFolder) + kRegular;
  const QString bold = QString(kFolder) + kBold;
  if (!QFileInfo::exists(regular)) return;
  QFontDatabase::addApplicationFont(regular);
  // Some packages' bold file has the regular outlines, only set wider. Without it, Qt emboldens.
  if (StemWidth(bold) > StemWidth(regular)) QFontDatabase::addApplicationFont(bold);
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
  QFont result;
  if (font.family == kTahoma) {
    result.setFamilies({ToQt(kTahoma), QStringLiteral("DejaVu Sans Condensed"),
                        QStringLiteral("Noto Sans"), QStringLiteral("Liberation Sans")});
    result.setStyleHint(QFont::SansSerif);
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
