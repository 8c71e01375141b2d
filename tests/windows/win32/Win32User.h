// A user of real windows, with keys and clicks sent as messages; never accesses the form directly.
#pragma once

#include <windows.h>

#include <exception>
#include <memory>

#include "host/win32/FormDialog.h"
#include "host/win32/FormWindow.h"
#include "host/win32/ShownText.h"
#include "tests/desktop/DesktopUser.h"
#include "tests/windows/win32/TestFrame.h"
#include "tests/windows/win32/WindowActions.h"

namespace kvo {

// Shows a page in a frame, and any other form in its dialog.
class Win32User final : public DesktopUser {
 public:
  // Reports the mouse button to the platform.
  Win32User(HeadlessPlatform& platform, Form& form);
  ~Win32User() override;

  FormWindow& View() { return *view_; }
  HWND Frame() const;

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
  const TextStyle& Style() override { return kWindowStyle; }
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

  // Presses a key at the focused window while holding others.
  void PressWith(WPARAM key, std::initializer_list<int> held);

 private:
  // Rethrows what a page's event throws.
  template <class Action>
  void Do(const Action& action);
  void CloseLists() const;
  HWND Reach(const FormControl& control) const;
  HWND Shown(const FormControl& control) const { return view_->WidgetOf(control); }
  HWND FocusedWindow() const;
  void TypeUnits(const std::wstring& units);
  void SendKey(HWND window, WPARAM key);
  void ClickRow(Grid& grid, std::size_t row, bool add, bool twice);
  void Click(const PropertyGridItem& item);
  MouseButton Button();

  HeadlessPlatform& platform_;
  Form& form_;
  std::unique_ptr<TestFrame> frame_;
  std::unique_ptr<FormWindow> page_;
  std::unique_ptr<FormDialog> dialog_;
  FormWindow* view_ = nullptr;
  HWND focus_ = nullptr;  // the focus at the last action
  std::exception_ptr failure_;
};

}  // namespace kvo
