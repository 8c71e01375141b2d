#pragma once

#include "host/qt/ControlView.h"
#include "host/qt/PropertyGridModel.h"

namespace kvo {

class PropertyTree;

// The property grid as a list of rows. What can be done to the value of the row on which the user
// stands can be done at once: its editor is open.
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
