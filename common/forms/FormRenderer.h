// Base of the classes that show a form and pass it the user's actions. Pages never include this
// file.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "common/forms/Form.h"
#include "common/forms/FormGrid.h"
#include "common/forms/FormPropertyGrid.h"

namespace kvo {

// Shows one form, which must outlive it. A form has at most one renderer at a time.
//
// User actions check the form's state only where noted: a renderer offers only what IsReachable
// allows. Exceptions from the page's event reach the caller.
class FormRenderer {
 public:
  FormRenderer(const FormRenderer&) = delete;
  FormRenderer& operator=(const FormRenderer&) = delete;

  // --- the user's actions ---

  // Replaces a part of the text with typed or pasted text and moves the caret behind it.
  // Single-line boxes cut the text at the first line break or NUL.
  static void Edit(EditBox& box, std::size_t start, std::size_t length, std::string_view typed);
  static void Select(EditBox& box, std::size_t start, std::size_t length);
  static void Choose(ComboBox& box, int row);
  static void Click(CheckBox& box);
  static void Click(OptionButton& button);
  static void Click(CommandButton& button);
  static void SelectTab(TabControl& tabs, std::size_t tab) { tabs.SelectedTab(tab); }
  static void Tick(Timer& timer);

  static void SelectItem(PropertyGrid& grid, PropertyGridItem* item);
  // Whether the user can type the row's value.
  static bool TakesText(const PropertyGridItem& item);
  static void EditValue(PropertyGridItem& item, std::string_view typed);
  // Appends to the value without copying it.
  static void AppendToValue(PropertyGridItem& item, std::string_view typed);
  static void ChooseValue(PropertyGridItem& item, const PropertyGridItem& choice);
  static void ClickButton(PropertyGridItem& item);
  static void PressDelete(PropertyGrid& grid);

  static void SelectRows(Grid& grid, std::vector<std::size_t> rows);
  static void DoubleClick(Grid& grid);

 protected:
  explicit FormRenderer(Form& form);
  virtual ~FormRenderer();

  Form& Shown() const { return form_; }

  // A control changed, by the page or by a user action. Called once for each aspect, before the
  // page's own event.
  virtual void ControlChanged(FormControl& control, Aspect aspect) = 0;
  // A row's value or state changed. For added and removed rows, ControlChanged is called.
  virtual void ItemChanged(PropertyGridItem& item) = 0;
  // The dialog was unloaded.
  virtual void FormUnloaded() {}

  // nullptr: the focus leaves the form.
  void Focus(FormControl* control);
  // The user closes the dialog with its window's close button.
  void CloseWindow() { form_.Closing(); }

 private:
  friend class Form;
  friend class FormControl;
  friend class PropertyGrid;
  static void Touch(const FormControl& control) { control.Parent().OwnerForm().Touched(); }

  Form& form_;
};

}  // namespace kvo
