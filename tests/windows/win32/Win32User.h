// A user in front of real windows: keys and clicks, as messages, and nothing that goes straight to
// the form.
#pragma once

#include <windows.h>

#include <exception>
#include <memory>

#include "host/headless/HeadlessPlatform.h"
#include "host/script/FormUser.h"
#include "host/win32/FormDialog.h"
#include "host/win32/FormWindow.h"
#include "host/win32/OwnWindow.h"
#include "tests/windows/win32/WindowActions.h"

namespace kvo {

// A top-level window without anything of its own but a button, as a property frame has its tabs.
class TestFrame final : private OwnWindow {
 public:
  explicit TestFrame(SIZE inside);
  ~TestFrame() override { End(); }

  HWND Window() const { return Handle(); }
  HWND Strip() const { return strip_; }

 private:
  LRESULT Message(UINT message, WPARAM wParam, LPARAM lParam) noexcept override {
    return Default(message, wParam, lParam);
  }

  HWND strip_;
};

// Dispatches what waits.
void PumpMessages();
// Until something is so; false when it takes too long.
bool PumpUntil(const std::function<bool()>& so, int milliseconds = 5000);

// Shows the form: a page in a frame, and everything else in its dialog.
class Win32User final : public FormUser {
 public:
  // The platform is told of the mouse button.
  Win32User(HeadlessPlatform& platform, Form& form);
  ~Win32User() override;

  FormWindow& View() { return *view_; }
  HWND Frame() const;
  // Brings the window to the front, and the keyboard to where it was.
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

  // A key with others held down, at what has the focus.
  void PressWith(WPARAM key, std::initializer_list<int> held);

 private:
  // What a page's event throws comes out of it.
  template <class Action>
  void Do(const Action& action);
  void CloseLists() const;
  HWND Reach(const FormControl& control) const;
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
  HWND focus_ = nullptr;  // when the window was last acted on
  std::exception_ptr failure_;
};

}  // namespace kvo
