#include "host/qt/QtText.h"

#include <QTextDocument>

namespace kvo {

QString ToQt(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

std::string FromQt(const QString& text) {
  QString paired = text;
  for (qsizetype at = 0; at < paired.size(); ++at) {
    if (paired[at].isHighSurrogate() && at + 1 < paired.size() && paired[at + 1].isLowSurrogate())
      ++at;
    else if (paired[at].isSurrogate())
      paired[at] = QChar::ReplacementCharacter;
  }
  return paired.toStdString();
}

QString ToQtCaption(std::string_view utf8) {
  return ToQt(utf8).replace(QLatin1Char('&'), QLatin1String("&&"));
}

QString ToolTipOf(const QString& text) {
  return text.isEmpty() ? text : Qt::convertFromPlainText(text);
}

}  // namespace kvo
