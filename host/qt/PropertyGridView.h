#pragma once

#include "host/qt/ControlView.h"
#include "host/qt/PropertyGridModel.h"

namespace kvo {

class PropertyTree;

// The property grid as a list of rows. The editor of the selected row's value is always open.
class PropertyGridView final : public ControlView {
 public:
  PropertyGridView(PropertyGrid& grid, QWidget& parent, ViewHost& host);
  QWidget* Widget() const override;
  void Show(Aspect aspect) override;
  void ShowItem(PropertyGridItem& item) override;

 private:
  PropertyGridModel model_;
  PropertyTree* widget_;
};

}  // namespace kvo
