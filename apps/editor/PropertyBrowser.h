// The property browser: accesses every property of the selected control by late binding, whatever
// its class.
#pragma once

#include <QTreeWidget>
#include <functional>
#include <memory>

#include "common/frame/Control.h"

class QLabel;
class QPushButton;

namespace kvo::editor {

class PropertyBrowser final : public QWidget {
 public:
  explicit PropertyBrowser(QWidget* parent);

  // Shows a control, or none with nullptr. `fresh` is a new control of its class: values that
  // differ from it are bold and can be reset.
  void Show(const std::shared_ptr<Control>& control, const std::shared_ptr<Control>& fresh,
            const QString& title);

  // The user entered a value for a property; the host assigns it and shows the control again.
  std::function<void(const std::string& property, const Variant& value)> onLet;

 private:
  class ValueDelegate;
  void ShowRow(QTreeWidgetItem& item, const PropertyRow& row);
  const PropertyRow* RowOf(const QTreeWidgetItem* item) const;
  void EditLong(const PropertyRow& row);
  void UpdateButtons();

  std::shared_ptr<Control> control_;
  std::shared_ptr<Control> fresh_;
  QLabel* title_;
  QTreeWidget* tree_;
  QPushButton* reset_;
  QPushButton* edit_;
};

}  // namespace kvo::editor
