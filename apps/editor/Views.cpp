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
                                 {Views::Layout::alone, "alone"}};
constexpr char kLayout[] = "layout";
constexpr char kWithSource[] = "layoutWithSource";
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

Views::Views(QWidget* design, QWidget* source, QWidget* parent)
    : QSplitter(Qt::Vertical, parent), design_(design), source_(source) {
  setChildrenCollapsible(false);
  addWidget(design_);
  addWidget(source_);
  setSizes({600, 400});
}

void Views::KeepSizes() {
  if (layout_ != Layout::alone && !design_->isHidden()) sizes_[layout_] = saveState();
}

void Views::Arrange(Layout layout) {
  KeepSizes();
  layout_ = layout;
  if (layout != Layout::alone) withSource_ = layout;
  design_->show();
  source_->setVisible(layout != Layout::alone);
  if (layout != Layout::alone) {
    setOrientation(layout == Layout::beside ? Qt::Horizontal : Qt::Vertical);
    if (!restoreState(sizes_.value(layout)))
      setSizes(layout == Layout::beside ? QList<int>{500, 500} : QList<int>{600, 400});
  }
  if (onArranged) onArranged();
}

void Views::ShowSource(bool shows) { Arrange(shows ? withSource_ : Layout::alone); }

void Views::ShowDesign(bool shows) {
  Arrange(shows ? layout_ : withSource_);
  design_->setVisible(shows);
  if (onArranged) onArranged();
}

void Views::Restore(Layout preset) {
  const QSettings settings;
  for (const LayoutName& each : kNames)
    sizes_[each.layout] = settings.value(QString(kSizes) + each.name).toByteArray();
  withSource_ = LayoutOf(settings.value(kWithSource).toString(), preset);
  const Layout layout = LayoutOf(settings.value(kLayout).toString(), withSource_);
  layout_ = Layout::alone;  // there are no sizes to keep yet
  Arrange(layout);
}

void Views::Remember() {
  KeepSizes();
  QSettings settings;
  settings.setValue(kLayout, NameOf(layout_));
  settings.setValue(kWithSource, NameOf(withSource_));
  for (const LayoutName& each : kNames)
    if (!sizes_[each.layout].isEmpty())
      settings.setValue(QString(kSizes) + each.name, sizes_[each.layout]);
}

}  // namespace kvo::editor
