#include "tests/windows/win32/Win32User.h"

#include <commctrl.h>

#include <algorithm>

#include "common/forms/FormKeys.h"
#include "common/forms/PropertyPage.h"
#include "common/forms/PropertyRows.h"
#include "host/win32/OwnWindow.h"
#include "host/win32/WideText.h"
#include "host/win32/WindowText.h"
#include "tests/windows/Callback.h"

namespace kvo {
namespace {

[[noreturn]] void Cannot(const FormControl& control, std::string_view why) {
  throw CannotDo(std::string(control.Name()) + ": " + std::string(why));
}

WPARAM VirtualKey(Key key) {
  switch (key) {
    case Key::tab:
    case Key::shiftTab:
      return VK_TAB;
    case Key::enter:
      return VK_RETURN;
    case Key::escape:
      return VK_ESCAPE;
    case Key::space:
      return VK_SPACE;
    case Key::backspace:
      return VK_BACK;
    case Key::del:
      return VK_DELETE;
    case Key::home:
      return VK_HOME;
    case Key::end:
      return VK_END;
    case Key::left:
      return VK_LEFT;
    case Key::right:
      return VK_RIGHT;
    case Key::up:
      return VK_UP;
    case Key::down:
      return VK_DOWN;
    case Key::selectAll:
      return 'A';
  }
  return 0;
}

// Returns the character that the keyboard driver makes of a key; 0 for none.
wchar_t CharacterOf(WPARAM key, bool control) {
  if (control) return key >= 'A' && key <= 'Z' ? static_cast<wchar_t>(key - 'A' + 1) : L'\0';
  const bool isOne =
      key == VK_RETURN || key == VK_ESCAPE || key == VK_SPACE || key == VK_BACK || key == VK_TAB;
  return isOne ? static_cast<wchar_t>(key) : L'\0';
}

LONG LineHeight(HWND edit) {
  const HDC device = GetDC(edit);
  const HGDIOBJ former =
      SelectObject(device, reinterpret_cast<HFONT>(SendMessageW(edit, WM_GETFONT, 0, 0)));
  TEXTMETRICW metrics{};
  GetTextMetricsW(device, &metrics);
  SelectObject(device, former);
  ReleaseDC(edit, device);
  return metrics.tmHeight;
}

}  // namespace

std::unique_ptr<DesktopUser> SitDown(HeadlessPlatform& platform, Form& form) {
  return std::make_unique<Win32User>(platform, form);
}

Win32User::Win32User(HeadlessPlatform& platform, Form& form) : platform_(platform), form_(form) {
  if (dynamic_cast<PropertyPage*>(&form) != nullptr) {
    frame_ = std::make_unique<TestFrame>(FormWindow::PixelSize(form));
    page_ = std::make_unique<FormWindow>(form, frame_->Window());
    view_ = page_.get();
    ShowWindow(view_->Window(), SW_SHOWNA);
    ShowWindow(frame_->Window(), SW_SHOW);
  } else {
    dialog_ = std::make_unique<FormDialog>(form, nullptr);
    view_ = &dialog_->View();
  }
  view_->onFailure = [this](const std::exception&) { failure_ = std::current_exception(); };
  if (dialog_) dialog_->Show();
  PumpMessages();
}

Win32User::~Win32User() = default;

HWND Win32User::Frame() const { return frame_ ? frame_->Window() : dialog_->Window(); }

void Win32User::Activate() {
  if (GetActiveWindow() == Frame() && IsChild(Frame(), GetFocus())) return;
  SetActiveWindow(Frame());
  PumpMessages();
  const FormControl* focused = form_.Focused();
  if (focused != nullptr && view_->ControlOf(focus_) != focused) focus_ = view_->WidgetOf(*focused);
  if (IsChild(Frame(), GetFocus()) || !IsChild(Frame(), focus_)) return;
  if (IsWindowVisible(focus_) && IsWindowEnabled(focus_)) {
    SetFocus(focus_);
  } else {
    MSG tab{view_->Window(), WM_KEYDOWN, VK_TAB, 1, 0, {}};
    if (!view_->TranslateKey(tab)) view_->FocusFirst();
  }
  PumpMessages();
}

// Closes a list that was opened on the way, without a choice.
void Win32User::CloseLists() const {
  const auto close = [](HWND window, LPARAM) -> BOOL {
    if (Is(window, WC_COMBOBOXW) && SendMessageW(window, CB_GETDROPPEDSTATE, 0, 0))
      SendMessageW(window, WM_KEYDOWN, VK_ESCAPE, 1);
    return TRUE;
  };
  EnumChildWindows(Frame(), Callback(close), 0);
}

template <class Action>
void Win32User::Do(const Action& action) {
  Activate();
  failure_ = nullptr;
  action();
  PumpMessages();
  CloseLists();
  PumpMessages();
  if (IsChild(Frame(), GetFocus())) focus_ = GetFocus();
  if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
}

HWND Win32User::Reach(const FormControl& control) const {
  const HWND window = view_->WidgetOf(control);
  bool usable = window != nullptr && IsWindowVisible(window);
  for (HWND at = window; usable && at != Frame(); at = GetAncestor(at, GA_PARENT))
    usable = IsWindowEnabled(at);
  if (!usable) Cannot(control, "is disabled or hidden");
  return window;
}

HWND Win32User::FocusedWindow() const {
  const HWND focused = GetFocus();
  if (focused == nullptr || !IsChild(view_->Window(), focused))
    throw CannotDo("nothing has the keyboard focus");
  if (!IsWindowVisible(focused) || !IsWindowEnabled(focused))
    throw CannotDo("what had the keyboard focus is disabled or hidden");
  return focused;
}

// --- focus and keyboard ---

void Win32User::FocusByKeyboard(FormControl& control) {
  Do([&] {
    Reach(control);
    if (!control.TakesFocus()) Cannot(control, "cannot take the focus");
    view_->Enter(control);
  });
}

void Win32User::ClickInto(EditBox& box, std::size_t caret) {
  Do([&] {
    HWND window = Reach(box);
    if (Is(window, WC_COMBOBOXW)) {
      window = ChildOf(window, WC_EDITW);
      if (window == nullptr) Cannot(box, "only its rows can be chosen");
    }
    const auto* area = dynamic_cast<TextBox*>(&box);
    const Lines lines = area != nullptr && area->MultiLine() ? Lines::many : Lines::one;
    const int units = ShownText(box.Text(), lines, kWindowStyle).ToWidget(caret);
    // Scrolls to the position if necessary.
    const auto first = SendMessageW(window, EM_GETFIRSTVISIBLELINE, 0, 0);
    const auto line = SendMessageW(window, EM_LINEFROMCHAR, static_cast<WPARAM>(units), 0);
    if (lines == Lines::many) SendMessageW(window, EM_LINESCROLL, 0, line - first);
    const auto at =
        static_cast<DWORD>(SendMessageW(window, EM_POSFROMCHAR, static_cast<WPARAM>(units), 0));
    POINT point{static_cast<short>(LOWORD(at)), static_cast<short>(HIWORD(at))};
    if (static_cast<LONG>(at) == -1) {
      // After the last character.
      const auto top = SendMessageW(window, EM_GETFIRSTVISIBLELINE, 0, 0);
      const LONG down = lines == Lines::many ? static_cast<LONG>(line - top) : 0;
      point = {Inside(window).right - 2, down * LineHeight(window) + 2};
    }
    ClickAt(window, {point.x, point.y + 2}, Button());
  });
}

void Win32User::Type(std::string_view text) {
  for (const std::string_view stroke : SplitStrokes(text)) {
    if (stroke == kEnterStroke)
      Press(Key::enter);
    else if (stroke == " ")
      Press(Key::space);
    else
      TypeUnits(ToWide(stroke));
  }
}

void Win32User::TypeUnits(const std::wstring& units) {
  Do([&] {
    const HWND focused = FocusedWindow();
    if (!Is(focused, WC_EDITW))
      throw CannotDo(std::string(view_->ControlOf(focused)->Name()) + ": cannot be typed into");
    for (const wchar_t unit : units) PostMessageW(focused, WM_CHAR, unit, 1);
  });
}

void Win32User::SendKey(HWND window, WPARAM key) {
  MSG message{window, WM_KEYDOWN, key, 1, 0, {}};
  const bool taken = dialog_ ? dialog_->Translate(message) : view_->TranslateKey(message);
  if (taken) return;
  SendMessageW(window, WM_KEYDOWN, key, 1);
  if (const wchar_t character = CharacterOf(key, GetKeyState(VK_CONTROL) < 0))
    if (IsWindow(window)) SendMessageW(window, WM_CHAR, character, 1);
  constexpr LPARAM kUp = 1 | (LPARAM{3} << 30);
  if (IsWindow(window)) SendMessageW(window, WM_KEYUP, key, kUp);
}

void Win32User::Press(Key key) {
  Do([&] {
    HWND target = GetFocus();
    const bool dialogKey = key == Key::enter || key == Key::escape;
    if (target == nullptr || !IsChild(view_->Window(), target)) target = view_->Window();
    const bool tab = key == Key::tab || key == Key::shiftTab;
    if (!tab && !dialogKey) target = FocusedWindow();
    const bool ofAllLines = (key == Key::home || key == Key::end) &&
                            (GetWindowLongW(target, GWL_STYLE) & ES_MULTILINE) != 0 &&
                            Is(target, WC_EDITW);
    const HeldKeys held = key == Key::selectAll || ofAllLines ? HeldKeys({VK_CONTROL})
                          : key == Key::shiftTab              ? HeldKeys({VK_SHIFT})
                                                              : HeldKeys({});
    if (!tab || dialog_) return SendKey(target, VirtualKey(key));
    MSG message{target, WM_KEYDOWN, VK_TAB, 1, 0, {}};
    if (view_->TranslateKey(message)) return;
    SetFocus(frame_->Strip());  // the frame takes the focus and passes it back
    if (key == Key::tab)
      view_->FocusFirst();
    else
      view_->FocusLast();
  });
}

void Win32User::PressWith(WPARAM key, std::initializer_list<int> held) {
  Do([&] {
    const HeldKeys down(held);
    SendKey(FocusedWindow(), key);
  });
}

void Win32User::Copy() { PressWith('C', {VK_CONTROL}); }
void Win32User::Cut() { PressWith('X', {VK_CONTROL}); }
void Win32User::Paste() { PressWith('V', {VK_CONTROL}); }
void Win32User::Undo() {
  Do([this] { SendMessageW(FocusedWindow(), WM_UNDO, 0, 0); });
}

// --- mouse ---

MouseButton Win32User::Button() {
  return [this](bool down) {
    std::uint8_t& button = platform_.keys[VK_LBUTTON];
    constexpr int kDown = 0x80;
    button = static_cast<std::uint8_t>(down ? button | kDown : button & ~kDown);
  };
}

void Win32User::Click(FormControl& control) {
  if (auto* box = dynamic_cast<TextBox*>(&control); box && box->MultiLine())
    return ClickInto(*box, CharacterCount(box->Text()));
  Do([&] {
    HWND window = Reach(control);
    constexpr int kInBox = 6;  // position of the mark of a check box or an option
    const RECT area = Inside(window);
    if (dynamic_cast<EditBox*>(&control) == nullptr)
      return ClickAt(window, {kInBox, area.bottom / 2}, Button());
    if (const HWND edit = ChildOf(window, WC_EDITW)) window = edit;
    const RECT text = Inside(window);
    ClickAt(window, {text.right - 2, text.bottom - 2}, Button());
  });
}

void Win32User::ClickRow(Grid& grid, std::size_t row, bool add, bool twice) {
  ClickListRow(Reach(grid), row, add, twice, Button());
  PumpMessages();
}

void Win32User::SelectRows(Grid& grid, std::vector<std::size_t> rows) {
  Do([&] {
    Reach(grid);
    for (const std::size_t row : rows)
      if (row >= grid.RowCount()) Cannot(grid, "has no row " + std::to_string(row));
    if (rows.empty()) return ClickBelowRows(Reach(grid), Button());
    bool add = false;
    for (const std::size_t row : rows) {
      ClickRow(grid, row, add, false);
      add = true;
    }
  });
}

void Win32User::DoubleClick(Grid& grid, std::size_t row) {
  Do([&] {
    ClickRow(grid, row, false, false);
    ClickRow(grid, row, false, true);
  });
}

void Win32User::Choose(ComboBox& box, int row) {
  Do([&] {
    const HWND list = Reach(box);
    if (row < 0 || row >= SendMessageW(list, CB_GETCOUNT, 0, 0))
      Cannot(box, "has no row " + std::to_string(row));
    ChooseInList(list, row, Button());
  });
}

void Win32User::SelectTab(TabControl& tabs, std::size_t tab) {
  Do([&] { ClickTab(Reach(tabs), tab, Button()); });
}

// --- property grids ---

void Win32User::Click(const PropertyGridItem& item) {
  ClickItem(Reach(item.Grid()), item.Grid(), RowOf(item.Grid(), &item), Button());
}

void Win32User::SelectItem(PropertyGridItem& item) {
  Do([&] { Click(item); });
}

void Win32User::ClickButton(PropertyGridItem& item) {
  Do([&] {
    const HWND window = Reach(item.Grid());
    std::wstring caption = L"...";
    if (item.Kind() == ItemKind::color)
      Click(item);
    else
      caption = ToWindowCaption(item.Caption());
    if (item.Kind() == ItemKind::button)
      PlaceOfItem(window, item.Grid(), RowOf(item.Grid(), &item));
    const HWND button = FindWindowExW(window, nullptr, WC_BUTTONW, caption.c_str());
    if (button == nullptr || !IsWindowVisible(button) || !IsWindowEnabled(button))
      Cannot(item.Grid(), "the row \"" + item.Caption() + "\" has no button to press");
    ClickAt(button, Centre(Inside(button)), Button());
  });
}

void Win32User::Choose(PropertyGridItem& item, std::string_view choice) {
  Do([&] {
    Click(item);
    const HWND list = ChildOf(Reach(item.Grid()), WC_COMBOBOXW);
    const int row = list == nullptr ? -1 : FindInList(list, choice);
    if (row < 0)
      Cannot(item.Grid(),
             "the row \"" + item.Caption() + "\" has no choice \"" + std::string(choice) + '"');
    ChooseInList(list, row, Button());
  });
}

// --- the rest ---

void Win32User::CloseWindow() {
  Do([&] {
    if (dialog_)
      SendMessageW(Frame(), WM_CLOSE, 0, 0);
    else
      view_->UserClosesWindow();
  });
}

// Waits in real time.
void Win32User::Tick(Timer& timer) {
  Do([&] {
    if (!timer.IsRunning()) Cannot(timer, "is not running");
    constexpr DWORD kLate = 3000;
    const DWORD begin = GetTickCount();
    MSG message{};
    while (!PeekMessageW(&message, view_->Window(), WM_TIMER, WM_TIMER, PM_REMOVE)) {
      if (GetTickCount() - begin > static_cast<DWORD>(timer.Interval()) + kLate)
        Cannot(timer, "does not tick");
      Sleep(5);
    }
    DispatchMessageW(&message);
  });
}

}  // namespace kvo
