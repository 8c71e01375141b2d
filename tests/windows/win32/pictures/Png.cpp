#include "tests/windows/win32/pictures/Png.h"

#include <objbase.h>
#include <objidl.h>

// GDI+ needs these, and the component's sources must not include them.
using std::max;
using std::min;

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpedantic"
#pragma GCC diagnostic ignored "-Wconversion"
#include <gdiplus.h>
#pragma GCC diagnostic pop

namespace kvo {
namespace {

constexpr CLSID kPngEncoder = {
    0x557CF406, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};

class GdiPlus {
 public:
  GdiPlus() {
    const Gdiplus::GdiplusStartupInput input;
    Gdiplus::GdiplusStartup(&token_, &input, nullptr);
  }
  GdiPlus(const GdiPlus&) = delete;
  GdiPlus& operator=(const GdiPlus&) = delete;
  ~GdiPlus() { Gdiplus::GdiplusShutdown(token_); }

 private:
  ULONG_PTR token_ = 0;
};

bool IsDrawn(Gdiplus::Bitmap& picture) {
  Gdiplus::Color first;
  Gdiplus::Color other;
  picture.GetPixel(0, 0, &first);
  for (UINT y = 0; y < picture.GetHeight(); ++y)
    for (UINT x = 0; x < picture.GetWidth(); ++x) {
      picture.GetPixel(static_cast<INT>(x), static_cast<INT>(y), &other);
      if (other.GetValue() != first.GetValue()) return true;
    }
  return false;
}

}  // namespace

bool WritePng(HBITMAP bitmap, const std::filesystem::path& file) {
  static const GdiPlus started;
  Gdiplus::Bitmap picture(bitmap, nullptr);
  return IsDrawn(picture) &&
         picture.Save(file.wstring().c_str(), &kPngEncoder, nullptr) == Gdiplus::Ok;
}

}  // namespace kvo
