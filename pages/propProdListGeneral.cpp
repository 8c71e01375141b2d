#include "pages/propProdListGeneral.h"

#include <algorithm>

#include "common/frame/Choices.h"

namespace kvo {
namespace {

constexpr std::string_view kLeft = "left";

}  // namespace

void propProdListGeneral::Initialize() {
  for (Choice& columns : choices::Columns())
    cboDisplayColumns.AddItem(ToText(std::move(columns.value)));
  for (Choice& row : choices::Thumbnails())
    cboDisplayThumbnail.AddItem(ToText(std::move(row.value)), std::move(row.caption.german));
}

void propProdListGeneral::SelectionChanged() {
  PropertyPage::SelectionChanged();
  if (txtDefaultExtension.Text().empty()) txtDefaultExtension.Text(std::string(kDefaultExtension));
}

std::string propProdListGeneral::KnownThumbnail(std::string value) {
  const std::vector<Choice> thumbnails = choices::Thumbnails();
  const bool known = std::any_of(thumbnails.begin(), thumbnails.end(),
                                 [&](const Choice& row) { return row.value == Variant(value); });
  return known ? std::move(value) : std::string(kLeft);
}

}  // namespace kvo
