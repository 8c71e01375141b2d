#include "apps/editor/Templates.h"

#include <QDir>
#include <QFile>

namespace kvo::editor {
namespace {

QString TemplateTitle(const QByteArray& page) {
  constexpr QByteArrayView kStart = "<title>";
  const qsizetype begin = page.indexOf(kStart) + kStart.size();
  return QString::fromUtf8(page.mid(begin, page.indexOf("</title>", begin) - begin));
}

}  // namespace

std::vector<Template> Templates() {
  std::vector<Template> templates;
  for (const QFileInfo& each : QDir(":/editor/templates").entryInfoList()) {
    QFile file(each.filePath());
    if (!file.open(QIODevice::ReadOnly)) continue;
    const QByteArray page = file.readAll();
    templates.push_back({TemplateTitle(page), page});
  }
  return templates;
}

}  // namespace kvo::editor
