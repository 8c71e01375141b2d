// kvo_windows_pictures FOLDER: draws every property page, the dialog, the input prompt and every
// design-time box. Fails if a picture is empty.
#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include "common/forms/PropertyFrame.h"
#include "host/headless/HeadlessPlatform.h"
#include "host/registration/classes.h"
#include "host/win32/BoxPainter.h"
#include "host/win32/FormDialog.h"
#include "host/win32/InputDialog.h"
#include "host/win32/Twips.h"
#include "pages/frmExpressionBuilder.h"
#include "tests/desktop/Pictured.h"
#include "tests/forms/FakeRecordset.h"
#include "tests/windows/Callback.h"
#include "tests/windows/win32/Win32User.h"
#include "tests/windows/win32/pictures/Png.h"

namespace kvo {
namespace {

class Studio {
 public:
  explicit Studio(std::filesystem::path folder) : folder_(std::move(folder)) {
    std::filesystem::create_directories(folder_);
  }

  // Draws the visible inside of a window.
  void Draw(HWND window, std::string_view name) {
    RedrawWindow(window, nullptr, nullptr,
                 RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
    PumpMessages();
    RECT area{};
    GetClientRect(window, &area);
    const HDC from = GetDC(window);
    Draw({area.right, area.bottom}, name,
         [&](HDC to) { BitBlt(to, 0, 0, area.right, area.bottom, from, 0, 0, SRCCOPY); });
    ReleaseDC(window, from);
  }

  void Draw(SIZE size, std::string_view name, const std::function<void(HDC)>& draw) {
    const HDC screen = GetDC(nullptr);
    const HDC memory = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, size.cx, size.cy);
    const HGDIOBJ former = SelectObject(memory, bitmap);
    const RECT all{0, 0, size.cx, size.cy};
    FillRect(memory, &all, GetSysColorBrush(COLOR_WINDOW));
    draw(memory);
    SelectObject(memory, former);
    const std::filesystem::path file = folder_ / (std::string(name) + ".png");
    if (!WritePng(bitmap, file)) {
      std::fprintf(stderr, "%s: the picture is empty\n", file.string().c_str());
      failed = true;
    }
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
  }

  bool failed = false;

 private:
  std::filesystem::path folder_;
};

// A frame without a window.
class NoWindow final : public PropertyFrame::Window {
 public:
  void ApplyEnabledChanged() override {}
  void ShowError(PropertyPage&, const std::exception& error) override {
    std::fprintf(stderr, "%s\n", error.what());
  }
  void Closed() override {}
};

void DrawPage(Studio& studio, HeadlessPlatform& platform, std::string_view name,
              const ControlClass& contract, const ObjectRef& office) {
  const std::vector<std::string> pages(contract.pages.begin(), contract.pages.end());
  const auto at = static_cast<std::size_t>(std::ranges::find(pages, name) - pages.begin());
  NoWindow window;
  PropertyFrame frame(window, {MakePictured(contract, office)}, pages, CreatePage);
  frame.Show(at);
  PropertyPage& page = frame.Page(at);
  Win32User user(platform, page);
  user.View().FocusFirst();
  studio.Draw(user.View().Window(), name);
  // Selects a row, so that its editor is open.
  auto* grid = dynamic_cast<PropertyGrid*>(page.Find("suiDesign"));
  if (grid == nullptr) return;
  constexpr std::size_t kColorRow = 4;
  constexpr std::size_t kListRow = 2;
  for (const std::size_t row : {kColorRow, kListRow}) {
    user.SelectItem(*grid->Items()[row]);
    studio.Draw(user.View().Window(), std::string(name) + (row == kColorRow ? "-color" : "-list"));
  }
}

void DrawPages(Studio& studio, HeadlessPlatform& platform, const ObjectRef& office) {
  for (const RegisteredPage& page : RegisteredPages()) {
    for (const RegisteredControl& registered : RegisteredControls()) {
      const ControlClass& contract = registered.contract();
      if (std::ranges::find(contract.pages, page.name) == contract.pages.end()) continue;
      DrawPage(studio, platform, page.name, contract, office);
      break;
    }
  }
}

void DrawDialog(Studio& studio, HeadlessPlatform& platform, const ObjectRef& office) {
  frmExpressionBuilder builder;
  builder.Office = office;
  builder.Init();
  Win32User user(platform, builder);
  user.Choose(builder.cboFields, 1);
  user.FocusByKeyboard(builder.txtArgument);
  user.Type("17");
  user.Click(builder.cmdAdd);
  studio.Draw(user.View().Window(), "frmExpressionBuilder");
}

// Draws them below each other on white, like a page.
void DrawBoxes(Studio& studio, const ObjectRef& office) {
  constexpr int kGap = 10;
  struct Placed {
    Box box;
    RECT at;
  };
  std::vector<Placed> boxes;
  SIZE all{0, kGap};
  for (const RegisteredControl& registered : RegisteredControls()) {
    Box box = MakePictured(registered.contract(), office)->DesignTimeBox();
    const SIZE size = BoxSize(box);
    boxes.push_back({std::move(box), {kGap, all.cy, kGap + size.cx, all.cy + size.cy}});
    all.cx = std::max(all.cx, size.cx + 2 * kGap);
    all.cy += size.cy + kGap;
  }
  studio.Draw(all, "boxes", [&](HDC to) {
    for (const Placed& placed : boxes) DrawBox(to, placed.box, placed.at);
  });
  // Draws them at twice the size, and the same from a metafile.
  studio.Draw({2 * all.cx, 2 * all.cy}, "boxes-200", [&](HDC to) {
    for (const Placed& placed : boxes) {
      const RECT& at = placed.at;
      DrawBox(to, placed.box, {2 * at.left, 2 * at.top, 2 * at.right, 2 * at.bottom});
    }
  });
  studio.Draw({2 * all.cx, 2 * all.cy}, "boxes-metafile-200", [&](HDC to) {
    for (const Placed& placed : boxes) {
      const HDC meta = CreateMetaFileW(nullptr);
      SetMapMode(meta, MM_ANISOTROPIC);
      SetWindowOrgEx(meta, 0, 0, nullptr);
      SetWindowExtEx(meta, placed.box.width, placed.box.height, nullptr);
      DrawBox(meta, placed.box, {0, 0, placed.box.width, placed.box.height});
      const HMETAFILE picture = CloseMetaFile(meta);
      const int state = SaveDC(to);
      SetMapMode(to, MM_ANISOTROPIC);
      SetViewportOrgEx(to, 2 * placed.at.left, 2 * placed.at.top, nullptr);
      SetViewportExtEx(to, 2 * (placed.at.right - placed.at.left),
                       2 * (placed.at.bottom - placed.at.top), nullptr);
      PlayMetaFile(to, picture);
      RestoreDC(to, state);
      DeleteMetaFile(picture);
    }
  });
}

void DrawPrompt(Studio& studio) {
  static Studio* at = nullptr;
  at = &studio;
  const auto meanwhile = [](HWND, UINT, UINT_PTR id, DWORD) {
    const HWND dialog = GetActiveWindow();
    if (dialog == nullptr) return;
    KillTimer(nullptr, id);
    at->Draw(dialog, "prompt");
    PostMessageW(dialog, WM_CLOSE, 0, 0);
  };
  SetTimer(nullptr, 0, 100, Callback(meanwhile));
  AskForLine(nullptr, "Bitte geben Sie einen Namen ein.", "Attribut hinzufügen...");
}

int Run(const std::filesystem::path& folder) {
  Studio studio(folder);
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  FakeTable table;
  table.rows = {{{"ProductNo", "100"}, {"Desc1", "Tee"}, {"Desc2", "grün"}},
                {{"ProductNo", "200"}, {"Desc1", "Kanne"}, {"Desc2", ""}},
                {{"ProductNo", "300"}, {"Desc1", "Tasse"}, {"Desc2", "Ton"}}};
  platform.recordsets = [&] { return std::make_shared<FakeRecordset>(table); };
  const ObjectRef office = MakeOffice();
  DrawPages(studio, platform, office);
  DrawDialog(studio, platform, office);
  DrawPrompt(studio);
  DrawBoxes(studio, office);
  return studio.failed ? 1 : 0;
}

}  // namespace
}  // namespace kvo

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  try {
    return kvo::Run(argv[1]);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
  }
}
