// The editors of a property grid's values.
#pragma once

#include <QWidget>

#include "common/forms/FormPropertyGrid.h"
#include "host/qt/ControlView.h"

namespace kvo {

class ValueEditor : public QWidget {
 public:
  using QWidget::QWidget;
  // Updates the editor from the row.
  virtual void ShowValue() = 0;
  // Selects the text that the next typed character replaces.
  virtual void SelectValue() = 0;
};

// Creates the editor of a row's value, which passes on each edit at once. Returns nullptr for a row
// whose value cannot be edited.
ValueEditor* MakeValueEditor(PropertyGridItem& item, QWidget* parent, ViewHost& host);

}  // namespace kvo
