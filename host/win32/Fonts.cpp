#include "host/win32/Fonts.h"

#include <cmath>
#include <map>
#include <mutex>
#include <string>
#include <tuple>

#include "host/win32/Twips.h"
#include "host/win32/WideText.h"

namespace kvo {
namespace {

constexpr double kPointsPerInch = 72;

class FontStore {
 public:
  FontStore() = default;
  FontStore(const FontStore&) = delete;
  FontStore& operator=(const FontStore&) = delete;
  ~FontStore() {
    for (const auto& [key, font] : fonts_) DeleteObject(font);
  }

  HFONT Get(const Font& font) {
    const int height =
        static_cast<int>(std::lround(font.points * ScreenResolution() / kPointsPerInch));
    const bool bold = font.weight == FontWeight::bold;
    const std::scoped_lock lock(mutex_);  // several threads may show forms
    HFONT& made = fonts_[{std::string(font.family), height, bold}];
    if (made == nullptr)
      made = CreateFontW(-height, 0, 0, 0, bold ? FW_BOLD : FW_NORMAL, FALSE, FALSE, FALSE,
                         DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                         DEFAULT_PITCH | FF_DONTCARE, ToWide(font.family).c_str());
    return made;
  }

 private:
  std::mutex mutex_;
  std::map<std::tuple<std::string, int, bool>, HFONT> fonts_;
};

}  // namespace

HFONT FontOf(const Font& font) {
  static FontStore store;
  return store.Get(font);
}

}  // namespace kvo
