// The editors of a property grid's values.
#pragma once

#include <QWidget>

#include "common/forms/FormPropertyGrid.h"
#include "host/qt/ControlView.h"

namespace kvo {

class ValueEditor : public QWidget {
 public:
  using QWidget::QWidget;
  // Brings the editor in step with the row.
  virtual void ShowValue() = 0;
  // Selects what the next character replaces.
  virtual void SelectValue() = 0;
};

// Hands each edit to the row as it is made. nullptr for a row whose value cannot be edited.
ValueEditor* MakeValueEditor(PropertyGridItem& item, QWidget* parent, ViewHost& host);

}  // namespace kvo
