// What shows a form and brings it the user's actions. A page never includes this file.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "common/forms/Form.h"
#include "common/forms/FormGrid.h"
#include "common/forms/FormPropertyGrid.h"

namespace kvo {

// Shows one form; ends before it. A form has at most one renderer at a time.
//
// A user action checks nothing about the form's state but what is said at it: a renderer offers
// only what IsReachable allows. Whatever the page's event throws reaches the caller of the action.
class FormRenderer {
 public:
  FormRenderer(const FormRenderer&) = delete;
  FormRenderer& operator=(const FormRenderer&) = delete;

  // --- the user's actions ---

  // Replaces a part of the text by what was typed or pasted and puts the caret behind it. What a
  // single-line box cannot take (from the first line break or NUL on) is cut off.
  static void Edit(EditBox& box, std::size_t start, std::size_t length, std::string_view typed);
  static void Select(EditBox& box, std::size_t start, std::size_t length);
  static void Choose(ComboBox& box, int row);
  static void Click(CheckBox& box);
  static void Click(OptionButton& button);
  static void Click(CommandButton& button);
  static void SelectTab(TabControl& tabs, std::size_t tab) { tabs.SelectedTab(tab); }
  static void Tick(Timer& timer);

  static void SelectItem(PropertyGrid& grid, PropertyGridItem* item);
  // Whether the row's value can be typed.
  static bool TakesText(const PropertyGridItem& item);
  static void EditValue(PropertyGridItem& item, std::string_view typed);
  // Types behind the value, without a copy of it.
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

  // Something about a control is new, made by the page or by a user action. Comes once for each
  // thing, before the page's own event.
  virtual void ControlChanged(FormControl& control, Aspect aspect) = 0;
  // The value or state of one row; ControlChanged tells of rows that come and go.
  virtual void ItemChanged(PropertyGridItem& item) = 0;
  // The dialog was unloaded.
  virtual void FormUnloaded() {}

  // nullptr: the focus leaves the form.
  void Focus(FormControl* control);
  // The user closes the dialog by its window's button.
  void CloseWindow() { form_.Closing(); }

 private:
  friend class Form;
  friend class FormControl;
  friend class PropertyGrid;
  static void Touch(const FormControl& control) { control.Parent().OwnerForm().Touched(); }

  Form& form_;
};

}  // namespace kvo
