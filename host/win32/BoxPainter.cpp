#include "host/win32/BoxPainter.h"

#include <algorithm>
#include <string>
#include <vector>

#include "host/win32/Fonts.h"
#include "host/win32/Twips.h"
#include "host/win32/WindowText.h"

namespace kvo {
namespace {

// Converts a box's twips to device units.
class Scale {
 public:
  Scale(const Box& box, const RECT& target)
      : target_(target), across_(std::max(1, box.width)), down_(std::max(1, box.height)) {}

  int Width(int twips) const { return MulDiv(twips, target_.right - target_.left, across_); }
  int Height(int twips) const { return MulDiv(twips, target_.bottom - target_.top, down_); }
  int X(int twips) const { return target_.left + Width(twips); }
  int Y(int twips) const { return target_.top + Height(twips); }

 private:
  RECT target_;
  int across_;
  int down_;
};

void Fill(HDC device, int left, int top, int right, int bottom, int color) {
  const RECT area{left, top, right, bottom};
  if (left < right && top < bottom) FillRect(device, &area, GetSysColorBrush(color));
}

// Centres the line on the edge, as a pen would.
void DrawBorder(HDC device, const Rect& border, const Scale& scale, const RECT& target) {
  const int line = std::max(1, scale.Width(kTwipsPerPixel));
  const auto left = std::max(scale.X(border.left) - line / 2, static_cast<int>(target.left));
  const auto top = std::max(scale.Y(border.top) - line / 2, static_cast<int>(target.top));
  const auto right = std::min(scale.X(border.left + std::max(0, border.width)) + line - line / 2,
                              static_cast<int>(target.right));
  const auto bottom = std::min(scale.Y(border.top + std::max(0, border.height)) + line - line / 2,
                               static_cast<int>(target.bottom));
  Fill(device, left, top, right, bottom, COLOR_HIGHLIGHT);
  Fill(device, left + line, top + line, right - line, bottom - line, COLOR_BTNFACE);
}

// Places each character where Tahoma puts it at 96 dpi, so that a metafile looks the same on every
// machine and at every size, and a substitute font fits into the box. Measures on another device
// context, because a metafile cannot measure text.
std::vector<int> Advances(const std::wstring& text, HFONT font, int width) {
  std::vector<int> ends(text.size());
  SIZE natural{};
  const HDC apart = CreateCompatibleDC(nullptr);
  {
    const Selected measured(apart, font);
    GetTextExtentExPointW(apart, text.c_str(), static_cast<int>(text.size()), 0, nullptr,
                          ends.data(), &natural);
  }
  DeleteDC(apart);
  std::vector<int> advances(text.size());
  int former = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const int end = natural.cx == 0 ? 0 : MulDiv(ends[at], width, natural.cx);
    advances[at] = end - former;
    former = end;
  }
  return advances;
}

void DrawLabel(HDC device, const Box::Label& label, const Scale& scale, const RECT& target) {
  constexpr auto kFontTwips = static_cast<int>(Font().points * kTwipsPerPoint);
  std::wstring caption = ToWindowText(label.caption);
  std::ranges::replace_if(
      caption, [](wchar_t c) { return c < 0x20; }, L' ');
  if (caption.empty()) return;
  const int weight = label.weight == FontWeight::bold ? FW_BOLD : FW_NORMAL;
  const HFONT font =
      CreateFontW(-std::max(1, scale.Height(kFontTwips)), 0, 0, 0, weight, FALSE, FALSE, FALSE,
                  DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                  DEFAULT_PITCH | FF_DONTCARE, L"Tahoma");
  {
    const Selected drawn(device, font);
    const int width = scale.Width(ThePlatform().TextWidth(label.caption, label.weight));
    const std::vector<int> advances = Advances(caption, font, width);
    ExtTextOutW(device, scale.X(label.at.left), scale.Y(label.at.top), ETO_CLIPPED, &target,
                caption.c_str(), static_cast<UINT>(caption.size()), advances.data());
  }
  DeleteObject(font);
}

}  // namespace

SIZE BoxSize(const Box& box) { return {ToPixels(box.width), ToPixels(box.height)}; }

void DrawBox(HDC device, const Box& box, const RECT& target) {
  if (box.width <= 0 || box.height <= 0) return;
  const Scale scale(box, target);
  const int mode = SetBkMode(device, TRANSPARENT);
  const UINT align = SetTextAlign(device, TA_LEFT | TA_TOP | TA_NOUPDATECP);
  const COLORREF color = SetTextColor(device, GetSysColor(COLOR_WINDOWTEXT));
  DrawBorder(device, box.border, scale, target);
  for (const Box::Label& label : box.labels) DrawLabel(device, label, scale, target);
  SetTextColor(device, color);
  SetTextAlign(device, align);
  SetBkMode(device, mode);
}

}  // namespace kvo
