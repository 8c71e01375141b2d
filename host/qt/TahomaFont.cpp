#include "host/qt/TahomaFont.h"

#include <QFileInfo>
#include <QFontDatabase>

#include "host/qt/QtText.h"

namespace kvo {
namespace {

constexpr std::string_view kTahoma = "Tahoma";

void LoadFromWine() {
  for (const char* file : {"tahoma.ttf", "tahomabd.ttf"}) {
    const QString path = QLatin1String("/usr/share/wine/fonts/") + QLatin1String(file);
    if (QFileInfo::exists(path)) QFontDatabase::addApplicationFont(path);
  }
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
