#include "pages/propProdListGeneral.h"

#include <algorithm>

namespace kvo {
namespace {

struct Thumbnail {
  std::string_view caption;
  std::string_view value;
};
constexpr Thumbnail kThumbnails[] = {{"Nein", "no"},
                                     {"Linksbündig", "left"},
                                     {"Rechtsbündig", "right"},
                                     {"Obenbündig", "top"},
                                     {"Untenbündig", "bottom"}};
constexpr Thumbnail kLeft = kThumbnails[1];

}  // namespace

void propProdListGeneral::Initialize() {
  for (int columns = 1; columns <= 4; ++columns) cboDisplayColumns.AddItem(std::to_string(columns));
  for (const Thumbnail& row : kThumbnails)
    cboDisplayThumbnail.AddItem(std::string(row.value), std::string(row.caption));
}

void propProdListGeneral::SelectionChanged() {
  PropertyPage::SelectionChanged();
  if (txtDefaultExtension.Text().empty()) txtDefaultExtension.Text(std::string(kDefaultExtension));
}

std::string propProdListGeneral::KnownThumbnail(std::string value) {
  const bool known = std::any_of(std::begin(kThumbnails), std::end(kThumbnails),
                                 [&](const Thumbnail& row) { return row.value == value; });
  return known ? std::move(value) : std::string(kLeft.value);
}

}  // namespace kvo
