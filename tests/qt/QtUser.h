// A user in front of real widgets: keys and clicks, and nothing that goes straight to the form.
#pragma once

#include <QTabBar>
#include <QWidget>
#include <exception>
#include <memory>

#include "host/headless/HeadlessPlatform.h"
#include "host/qt/FormDialog.h"
#include "host/qt/FormView.h"
#include "host/script/FormUser.h"

class QComboBox;
class QTreeView;

namespace kvo {

// Shows the form: a page in a window with a row of tabs over it, as a property frame's is, and
// everything else in its dialog.
class QtUser final : public FormUser {
 public:
  // The platform is told of the mouse button.
  QtUser(HeadlessPlatform& platform, Form& form);

  FormView& View() { return *view_; }
  // Brings the window to the front.
  void Activate();

  void FocusByKeyboard(FormControl& control) override;
  void ClickInto(EditBox& box, std::size_t caret) override;
  void Type(std::string_view text) override;
  void Press(Key key) override;
  void Click(FormControl& control) override;
  void DoubleClick(Grid& grid, std::size_t row) override;
  using FormUser::Choose;
  void Choose(ComboBox& box, int row) override;
  void SelectTab(TabControl& tabs, std::size_t tab) override;
  void SelectRows(Grid& grid, std::vector<std::size_t> rows) override;
  void SelectItem(PropertyGridItem& item) override;
  void ClickButton(PropertyGridItem& item) override;
  void Choose(PropertyGridItem& item, std::string_view choice) override;
  void CloseWindow() override;
  void Tick(Timer& timer) override;

 private:
  // What a page's event throws comes out of it.
  template <class Action>
  void Do(const Action& action);
  QWidget& Reach(const FormControl& control);
  QWidget& FocusedWidget();
  void TypeCharacter(std::string_view character);
  void ClickAt(QWidget& widget, const QPoint& position, Qt::KeyboardModifiers modifiers = {});
  void ClickRow(Grid& grid, std::size_t row, Qt::KeyboardModifiers modifiers);
  void ClickItem(const PropertyGridItem& item);
  void ChooseInPopup(QComboBox& list, int row);

  HeadlessPlatform& platform_;
  std::unique_ptr<QWidget> window_;
  QTabBar* strip_ = nullptr;  // the frame's own tabs, in front of a page
  FormView* view_ = nullptr;
  std::exception_ptr failure_;
};

}  // namespace kvo
