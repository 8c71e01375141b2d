#include "apps/editor/Icons.h"

#include <QBuffer>
#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QImageReader>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>

namespace kvo::editor {
namespace {

QColor ColorOf(QIcon::Mode mode) {
  const QPalette palette = QGuiApplication::palette();
  switch (mode) {
    case QIcon::Disabled:
      return palette.color(QPalette::Disabled, QPalette::ButtonText);
    case QIcon::Selected:
      return palette.color(QPalette::HighlightedText);
    default:
      return palette.color(QPalette::ButtonText);
  }
}

class LineIconEngine final : public QIconEngine {
 public:
  explicit LineIconEngine(QString name) : name_(std::move(name)) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
    const double scale = painter->device()->devicePixelRatioF();
    painter->drawPixmap(rect, pixmap(rect.size() * scale, mode, state));
  }
  // Draws anew for each colour, so that icons follow a change of the palette.
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override {
    const QColor color = ColorOf(mode);
    const QString key = QString("kvo-icon %1 %2 %3 %4")
                            .arg(name_, color.name())
                            .arg(size.width())
                            .arg(size.height());
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap)) return pixmap;
    QFile file(":/editor/icons/" + name_ + ".svg");
    if (!file.open(QIODevice::ReadOnly)) return {};
    QByteArray drawing = file.readAll();
    drawing.replace("currentColor", color.name().toLatin1());
    QBuffer buffer(&drawing);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, "svg");
    const int side = std::min(size.width(), size.height());
    reader.setScaledSize({side, side});
    pixmap = QPixmap::fromImage(reader.read());
    QPixmapCache::insert(key, pixmap);
    return pixmap;
  }
  QIconEngine* clone() const override { return new LineIconEngine(name_); }
  bool isNull() override { return !QFile::exists(":/editor/icons/" + name_ + ".svg"); }

 private:
  QString name_;
};

}  // namespace

QIcon LineIcon(const QString& name) { return QIcon(new LineIconEngine(name)); }

}  // namespace kvo::editor
