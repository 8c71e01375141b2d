// A user of real widgets, with keys and clicks only; never accesses the form directly.
#pragma once

#include <QTabBar>
#include <QWidget>
#include <exception>
#include <memory>

#include "host/qt/FormDialog.h"
#include "host/qt/FormView.h"
#include "host/qt/ShownText.h"
#include "tests/desktop/DesktopUser.h"

class QComboBox;
class QTreeView;

namespace kvo {

// Shows a page in a window with tabs above it, as a property frame does, and any other form in its
// dialog.
class QtUser final : public DesktopUser {
 public:
  // Reports the mouse button to the platform.
  QtUser(HeadlessPlatform& platform, Form& form);

  FormView& View() { return *view_; }

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

  void Copy() override;
  void Cut() override;
  void Paste() override;
  void Undo() override;
  void PutOnClipboard(std::string_view text) override;
  std::string OnClipboard() override;
  void Activate() override;
  void LookElsewhere() override;
  void Settle() override;
  bool WaitUntil(const std::function<bool()>& so, int milliseconds) override;
  void Paint(const Grid& grid, std::size_t row) override;
  bool IsBusy() override { return view_->IsBusy(); }
  void OnFailure(std::function<void(const std::exception&)> report) override;

  std::u16string AsShown(std::string_view text) override;
  const TextStyle& Style() override { return kQtStyle; }
  bool ShowsEnabled(const FormControl& control) override;
  bool ShowsVisible(const FormControl& control) override;
  bool ShowsMark(const FormControl& control) override;
  bool ShowsRunning(const Timer& timer) override;
  std::u16string ShownTextOf(const FormControl& control) override;
  UnitRange ShownSelection(const EditBox& box) override;
  std::vector<std::u16string> ShownRows(const ComboBox& box) override;
  int ShownChoice(const ComboBox& box) override;
  std::size_t ShownTab(const TabControl& tabs) override;
  std::optional<std::vector<CaptionAndValue>> ShownItems(const PropertyGrid& grid) override;
  std::optional<int> ShownItem(const PropertyGrid& grid) override;
  std::optional<std::u16string> ShownValue(const PropertyGrid& grid) override;
  std::size_t ShownColumns(const Grid& grid) override;
  std::size_t ShownRecords(const Grid& grid) override;
  std::u16string ShownCell(const Grid& grid, std::size_t row, std::size_t column) override;
  std::vector<std::size_t> ShownSelection(const Grid& grid) override;

 private:
  // Rethrows what a page's event throws.
  template <class Action>
  void Do(const Action& action);
  QWidget& Reach(const FormControl& control);
  QWidget& FocusedWidget();
  void PressChord(char letter);
  template <class Widget>
  Widget& Shown(const FormControl& control) {
    return dynamic_cast<Widget&>(*view_->WidgetOf(control));
  }
  void TypeCharacter(std::string_view character);
  void ClickAt(QWidget& widget, const QPoint& position, Qt::KeyboardModifiers modifiers = {});
  void ClickRow(Grid& grid, std::size_t row, Qt::KeyboardModifiers modifiers);
  void ClickItem(const PropertyGridItem& item);
  void ChooseInPopup(QComboBox& list, int row);

  HeadlessPlatform& platform_;
  std::unique_ptr<QWidget> window_;
  QTabBar* strip_ = nullptr;  // the frame's own tabs, above a page
  FormView* view_ = nullptr;
  std::exception_ptr failure_;
};

}  // namespace kvo
