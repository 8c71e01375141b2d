// The property browser: accesses the id and every property of the selected control by late binding,
// whatever its class. Captions, help and inputs come from the rows of the class.
#pragma once

#include <QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "apps/editor/ValueDelegate.h"
#include "common/frame/Control.h"
#include "document/office/Office.h"

class QLabel;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace kvo::editor {

class PropertyBrowser final : public QWidget, private ValueSource {
 public:
  explicit PropertyBrowser(QWidget* parent);

  // Shows a control. `fresh` is a new control of its class: values that differ from it are bold and
  // can be reset. `office` provides the fields.
  void Show(const std::shared_ptr<Control>& control, const std::shared_ptr<Control>& fresh,
            const QString& id, const std::shared_ptr<office::Office>& office);
  // Shows a text instead of a control.
  void ShowNone(const QString& text);

  // The user entered a value for a property, or another id; the host assigns it and shows the
  // control again.
  std::function<void(const std::string& property, const Variant& value)> onLet;
  std::function<void(const std::string& id)> onRename;

 private:
  class Tree;

  void MakeRows();
  void ShowRow(QTreeWidgetItem& item);
  // Returns the property of a row; nullptr for the id and the group.
  const PropertyRow* RowOf(const QTreeWidgetItem* item) const;
  void Edit(QTreeWidgetItem& item);
  void EditLong(const PropertyRow& row);
  void ShowCurrent();

  std::string ValueAt(const QModelIndex& index) const override;
  ValueInput InputAt(const QModelIndex& index) const override;
  void Take(const QModelIndex& index, const std::string& value) override;
  ValueInput InputOf(const PropertyRow& row) const;

  std::shared_ptr<Control> control_;
  std::shared_ptr<Control> fresh_;
  std::shared_ptr<office::Office> office_;
  QString id_;
  QLabel* title_;
  Tree* tree_;
  QLabel* help_;
  QPushButton* reset_;
  QPushButton* edit_;
  bool showsAdvanced_ = false;  // kept from one control to the next
};

}  // namespace kvo::editor
