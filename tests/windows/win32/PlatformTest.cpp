// The system's dialogs, answered while they are open.
#include "host/win32/Win32Platform.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <commctrl.h>
#include <commdlg.h>
#undef ChooseColor

#include "host/win32/BoxPainter.h"
#include "host/win32/Fonts.h"
#include "host/win32/Messages.h"
#include "host/win32/WindowText.h"
#include "pages/frmExpressionBuilder.h"
#include "tests/windows/Callback.h"
#include "tests/windows/win32/Win32User.h"

namespace kvo {
namespace {

class Desk final : public Win32Platform {
 public:
  GuidText NewGuid() override { return {}; }
  std::string Format(const Variant&, std::string_view) override { return {}; }
  void ShowPropertyFrame(WindowHandle, std::string_view, ObjectRef,
                         const std::vector<std::string>&) override {}
  ObjectRef NewRecordset() override { return {}; }
};

class Platforms : public testing::Test {
 protected:
  using Action = std::function<void(HWND dialog)>;

  // Acts as the user as soon as a window with this title is active.
  void Meanwhile(std::wstring title, Action action) {
    waiting_.push_back({std::move(title), std::move(action)});
    current_ = this;
    SetTimer(nullptr, 0, 10, Callback([](HWND, UINT, UINT_PTR id, DWORD) {
               const HWND dialog = GetActiveWindow();
               if (current_ == nullptr || current_->waiting_.empty()) {
                 KillTimer(nullptr, id);
               } else if (dialog != nullptr && TextOf(dialog) == current_->waiting_.front().title) {
                 KillTimer(nullptr, id);
                 const Waiting now = std::move(current_->waiting_.front());
                 current_->waiting_.erase(current_->waiting_.begin());
                 ++current_->answered;
                 now.action(dialog);
               }
             }));
  }
  ~Platforms() override { current_ = nullptr; }

  static void Key(HWND window, WPARAM key) { PostMessageW(window, WM_KEYDOWN, key, 1); }
  static void Press(HWND dialog, int button) {
    PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED),
                 reinterpret_cast<LPARAM>(GetDlgItem(dialog, button)));
  }

  Desk platform;
  PlatformScope scope{platform};
  int answered = 0;

 private:
  struct Waiting {
    std::wstring title;
    Action action;
  };
  std::vector<Waiting> waiting_;
  static Platforms* current_;
};

Platforms* Platforms::current_ = nullptr;

TEST_F(Platforms, ShowMessagesUnderTheComponentsTitle) {
  Meanwhile(L"KVOPDesignObjects", [](HWND box) {
    bool found = false;
    for (HWND text = nullptr; (text = FindWindowExW(box, text, WC_STATICW, nullptr)) != nullptr;)
      found = found || TextOf(text) == L"<b>a</b> & b";
    EXPECT_TRUE(found);
    EXPECT_NE(ChildOf(box, WC_BUTTONW), nullptr);
    EXPECT_EQ(ChildOf(box, WC_BUTTONW, 1), nullptr);
    SendMessageW(ChildOf(box, WC_BUTTONW), BM_CLICK, 0, 0);
  });
  platform.ShowMessage(0, "<b>a</b> & b");
  EXPECT_EQ(answered, 1);
}

TEST_F(Platforms, AskForALine) {
  const TestFrame owner({300, 200});
  ShowWindow(owner.Window(), SW_SHOW);
  SetActiveWindow(owner.Window());
  Meanwhile(L"Titel", [&](HWND dialog) {
    EXPECT_FALSE(IsWindowEnabled(owner.Window()));
    const HWND inside = GetWindow(dialog, GW_CHILD);
    EXPECT_EQ(TextOf(ChildOf(inside, WC_STATICW)), L"R&D?");
    EXPECT_EQ(TextOf(ChildOf(inside, WC_BUTTONW, 1)),
              UserLanguage() == Language::german ? L"Abbrechen" : L"Cancel");
    const HWND line = GetFocus();
    EXPECT_EQ(line, ChildOf(inside, WC_EDITW));
    for (const wchar_t c : std::wstring(L"abc")) PostMessageW(line, WM_CHAR, c, 1);
    Key(line, VK_RETURN);
  });
  EXPECT_EQ(platform.InputPrompt("R&D?", "Titel"), "abc");
  EXPECT_TRUE(IsWindowEnabled(owner.Window()));
  EXPECT_EQ(GetActiveWindow(), owner.Window());
  Meanwhile(L"Titel", [](HWND) { Key(GetFocus(), VK_ESCAPE); });
  EXPECT_EQ(platform.InputPrompt("?", "Titel"), std::nullopt);
  Meanwhile(L"Titel", [](HWND dialog) { PostMessageW(dialog, WM_CLOSE, 0, 0); });
  EXPECT_EQ(platform.InputPrompt("?", "Titel"), std::nullopt);
  EXPECT_EQ(answered, 3);
}

// Finds the system's dialog whatever its title; its fields are those of the documented template.
TEST_F(Platforms, ChooseColours) {
  static HWND dialog = nullptr;
  const HHOOK hook =
      SetWindowsHookExW(WH_CBT, Callback([](int code, WPARAM wParam, LPARAM lParam) -> LRESULT {
                          if (code == HCBT_ACTIVATE) dialog = reinterpret_cast<HWND>(wParam);
                          return CallNextHookEx(nullptr, code, wParam, lParam);
                        }),
                        nullptr, GetCurrentThreadId());
  constexpr int kRed = 706;  // COLOR_RED; green and blue follow
  static int turn = 0;
  static UINT preset[3]{};
  const UINT_PTR timer = SetTimer(nullptr, 0, 50, Callback([](HWND, UINT, UINT_PTR, DWORD) {
                                    if (dialog == nullptr || GetDlgItem(dialog, kRed) == nullptr)
                                      return;
                                    const HWND open = std::exchange(dialog, nullptr);
                                    for (int part = 0; part < 3; ++part)
                                      preset[part] =
                                          GetDlgItemInt(open, kRed + part, nullptr, FALSE);
                                    if (turn++ > 0) return Press(open, IDCANCEL);
                                    SetDlgItemInt(open, kRed, 0xAB, FALSE);
                                    SetDlgItemInt(open, kRed + 1, 0xCD, FALSE);
                                    SetDlgItemInt(open, kRed + 2, 0xEF, FALSE);
                                    Press(open, IDOK);
                                  }));
  EXPECT_EQ(platform.ChooseColor(0x563412), 0xEFCDAB);
  EXPECT_EQ(preset[0], 0x12U);
  EXPECT_EQ(preset[1], 0x34U);
  EXPECT_EQ(preset[2], 0x56U);
  EXPECT_EQ(platform.ChooseColor(0x563412), 0x563412);
  EXPECT_EQ(turn, 2);
  KillTimer(nullptr, timer);
  UnhookWindowsHookEx(hook);
}

TEST_F(Platforms, ShowModalFormsUntilTheyAreUnloaded) {
  const auto press = [&](WPARAM key) {
    frmExpressionBuilder dialog;
    dialog.CancelForm = key == VK_RETURN;
    Meanwhile(L"Ausdruck-Assistent", [&](HWND) {
      EXPECT_EQ(dialog.Focused(), &dialog.cboFields);
      Key(GetFocus(), key);
    });
    dialog.ShowModal();
    return dialog.CancelForm;
  };
  EXPECT_FALSE(press(VK_RETURN));
  EXPECT_TRUE(press(VK_ESCAPE));
  frmExpressionBuilder closed;
  Meanwhile(L"Ausdruck-Assistent", [](HWND window) { PostMessageW(window, WM_CLOSE, 0, 0); });
  closed.ShowModal();
  EXPECT_TRUE(closed.CancelForm);
  EXPECT_EQ(answered, 3);
}

TEST_F(Platforms, AFailureInADialogIsShownAndLeavesItOpen) {
  frmExpressionBuilder dialog;
  Meanwhile(L"Ausdruck-Assistent", [&](HWND window) {
    Meanwhile(L"KVOPDesignObjects", [window](HWND box) {
      EXPECT_TRUE(IsWindowVisible(window));
      EXPECT_FALSE(IsWindowEnabled(window));
      SendMessageW(ChildOf(box, WC_BUTTONW), BM_CLICK, 0, 0);
      PostMessageW(window, WM_CLOSE, 0, 0);
    });
    const HWND add = ChildOf(GetWindow(window, GW_CHILD), WC_BUTTONW);  // no field is chosen
    PostMessageW(add, BM_CLICK, 0, 0);
  });
  dialog.ShowModal();
  EXPECT_EQ(answered, 2);
}

TEST_F(Platforms, TheTabKeyOfADialogWrapsAround) {
  frmExpressionBuilder dialog;
  Meanwhile(L"Ausdruck-Assistent", [&](HWND window) {
    Key(GetFocus(), VK_TAB);
    PumpUntil([&] { return dialog.Focused() != &dialog.cboFields; }, 10);
    PostMessageW(window, WM_CLOSE, 0, 0);
  });
  dialog.ShowModal();
  EXPECT_EQ(answered, 1);
}

TEST_F(Platforms, KnowTheMouseButton) {
  BYTE former[256]{};
  GetKeyboardState(former);
  BYTE keys[256]{};
  keys[VK_LBUTTON] = 0x80;
  SetKeyboardState(keys);
  EXPECT_EQ(platform.KeyboardState()[1] & 0x80, 0x80);
  EXPECT_EQ(platform.KeyboardState()[2] & 0x80, 0);
  SetKeyboardState(former);
}

TEST_F(Platforms, TextWidthIsTheSameOnEveryMachine) {
  for (const FontWeight weight : {FontWeight::normal, FontWeight::bold})
    EXPECT_EQ(platform.TextWidth("Bestellung: ÄÖÜ €", weight),
              TahomaTextWidth("Bestellung: ÄÖÜ €", weight));
}

// --- design-time boxes ---

class Canvas {
 public:
  explicit Canvas(SIZE size) : size_(size) {
    const HDC screen = GetDC(nullptr);
    device = CreateCompatibleDC(screen);
    bitmap_ = CreateCompatibleBitmap(screen, size.cx, size.cy);
    ReleaseDC(nullptr, screen);
    SelectObject(device, bitmap_);
    const RECT all{0, 0, size.cx, size.cy};
    FillRect(device, &all, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
  }
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;
  ~Canvas() {
    DeleteDC(device);
    DeleteObject(bitmap_);
  }
  COLORREF At(int x, int y) const { return GetPixel(device, x, y); }
  int Differences(const Canvas& other) const {
    int count = 0;
    for (int y = 0; y < size_.cy; ++y)
      for (int x = 0; x < size_.cx; ++x) count += At(x, y) != other.At(x, y);
    return count;
  }

  HDC device;

 private:
  SIZE size_;
  HBITMAP bitmap_;
};

Box MakeBox() {
  Box box;
  box.width = 2700;
  box.height = 390;
  box.border = {15, 15, 2670, 360};
  box.labels.push_back({"lblBasename", "R&D \r\n€", FontWeight::bold, {120, 90, 0, 195}});
  box.labels.push_back({"lblValue", "Wert", FontWeight::normal, {1200, 90, 0, 195}});
  return box;
}

TEST_F(Platforms, BoxesHaveTheirBorderAndStayInsideIt) {
  const Box box = MakeBox();
  const SIZE size = BoxSize(box);
  const Canvas canvas({size.cx + 20, size.cy + 20});
  DrawBox(canvas.device, box, {10, 10, 10 + size.cx, 10 + size.cy});
  const COLORREF white = RGB(255, 255, 255);
  EXPECT_EQ(canvas.At(10, 10), white);
  EXPECT_EQ(canvas.At(11, 11), GetSysColor(COLOR_HIGHLIGHT));
  EXPECT_EQ(canvas.At(12, 12), GetSysColor(COLOR_BTNFACE));
  EXPECT_EQ(canvas.At(10 + size.cx - 1, 10 + size.cy - 1), GetSysColor(COLOR_HIGHLIGHT));
  int text = 0;
  for (int y = 0; y < size.cy + 20; ++y)
    for (int x = 0; x < size.cx + 20; ++x) {
      const bool inside = x >= 10 && y >= 10 && x < 10 + size.cx && y < 10 + size.cy;
      if (!inside) {
        EXPECT_EQ(canvas.At(x, y), white);
      }
      text += canvas.At(x, y) == GetSysColor(COLOR_WINDOWTEXT);
    }
  EXPECT_GT(text, 50);
}

TEST_F(Platforms, AMetafileOfABoxLooksTheSame) {
  const Box box = MakeBox();
  const SIZE size = BoxSize(box);
  const RECT target{0, 0, size.cx, size.cy};
  const Canvas direct(size);
  DrawBox(direct.device, box, target);
  const HDC meta = CreateEnhMetaFileW(nullptr, nullptr, nullptr, nullptr);
  DrawBox(meta, box, target);
  const HENHMETAFILE picture = CloseEnhMetaFile(meta);
  ENHMETAHEADER header{};
  GetEnhMetaFileHeader(picture, sizeof(header), &header);
  const Canvas played(size);
  const RECT bounds{header.rclBounds.left, header.rclBounds.top, header.rclBounds.right,
                    header.rclBounds.bottom};
  PlayEnhMetaFile(played.device, picture, &bounds);
  DeleteEnhMetaFile(picture);
  EXPECT_EQ(direct.Differences(played), 0);
}

}  // namespace
}  // namespace kvo
