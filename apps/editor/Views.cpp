#include "apps/editor/Views.h"

#include <QSettings>

namespace kvo::editor {
namespace {

struct LayoutName {
  Views::Layout layout;
  const char* name;
};
constexpr LayoutName kNames[] = {{Views::Layout::beside, "beside"},
                                 {Views::Layout::below, "below"},
                                 {Views::Layout::alone, "alone"},
                                 {Views::Layout::preview, "preview"}};
constexpr char kLayout[] = "layout";
constexpr char kWithSource[] = "layoutWithSource";
constexpr char kFormer[] = "layoutWithoutPreview";
constexpr char kDesignInPreview[] = "designInPreview";
constexpr char kSourceInPreview[] = "sourceInPreview";
constexpr char kSizes[] = "sizes/";

QString NameOf(Views::Layout layout) {
  for (const LayoutName& each : kNames)
    if (each.layout == layout) return each.name;
  return {};
}

Views::Layout LayoutOf(const QString& name, Views::Layout preset) {
  for (const LayoutName& each : kNames)
    if (name == each.name) return each.layout;
  return preset;
}

}  // namespace

Views::Views(QWidget* design, QWidget* source, QWidget* preview, QWidget* parent)
    : QSplitter(Qt::Vertical, parent), design_(design), source_(source), preview_(preview) {
  setChildrenCollapsible(false);
  addWidget(design_);
  addWidget(source_);
  addWidget(preview_);
  preview_->hide();
  setSizes({600, 400});
}

void Views::KeepSizes() {
  if (layout_ != Layout::alone && !design_->isHidden()) sizes_[layout_] = saveState();
}

void Views::Arrange(Layout layout) {
  KeepSizes();
  const bool preview = layout == Layout::preview;
  if (preview && layout_ != Layout::preview) former_ = layout_;
  layout_ = layout;
  if (layout == Layout::beside || layout == Layout::below) withSource_ = layout;
  design_->setVisible(!preview || designInPreview_);
  source_->setVisible(preview ? sourceInPreview_ : layout != Layout::alone);
  preview_->setVisible(preview);
  if (layout != Layout::alone) {
    setOrientation(layout == Layout::below ? Qt::Vertical : Qt::Horizontal);
    if (!restoreState(sizes_.value(layout)))
      setSizes(preview                    ? QList<int>{450, 450, 600}
               : layout == Layout::beside ? QList<int>{500, 500}
                                          : QList<int>{600, 400});
  }
  if (onArranged) onArranged();
}

void Views::ShowSource(bool shows) {
  if (layout_ != Layout::preview) return Arrange(shows ? withSource_ : Layout::alone);
  sourceInPreview_ = shows;
  Arrange(Layout::preview);
}

void Views::ShowDesign(bool shows) {
  if (layout_ == Layout::preview) {
    designInPreview_ = shows;
    return Arrange(Layout::preview);
  }
  Arrange(shows ? layout_ : withSource_);
  design_->setVisible(shows);
  if (onArranged) onArranged();
}

void Views::ShowPreview(bool shows) { Arrange(shows ? Layout::preview : former_); }

void Views::Restore(Layout preset) {
  const QSettings settings;
  for (const LayoutName& each : kNames)
    sizes_[each.layout] = settings.value(QString(kSizes) + each.name).toByteArray();
  withSource_ = LayoutOf(settings.value(kWithSource).toString(), preset);
  const Layout former = LayoutOf(settings.value(kFormer).toString(), withSource_);
  // A wide window has room for the design view beside the preview.
  designInPreview_ = settings.value(kDesignInPreview, preset == Layout::beside).toBool();
  sourceInPreview_ = settings.value(kSourceInPreview, false).toBool();
  const Layout layout = LayoutOf(settings.value(kLayout).toString(), withSource_);
  layout_ = Layout::alone;  // there are no sizes to keep yet
  Arrange(layout);
  former_ = former;
}

void Views::Remember() {
  KeepSizes();
  QSettings settings;
  settings.setValue(kLayout, NameOf(layout_));
  settings.setValue(kWithSource, NameOf(withSource_));
  settings.setValue(kFormer, NameOf(former_));
  settings.setValue(kDesignInPreview, designInPreview_);
  settings.setValue(kSourceInPreview, sourceInPreview_);
  for (const LayoutName& each : kNames)
    if (!sizes_[each.layout].isEmpty())
      settings.setValue(QString(kSizes) + each.name, sizes_[each.layout]);
}

}  // namespace kvo::editor
