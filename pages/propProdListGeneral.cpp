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
constexpr int kLeft = 1;  // shown for any other value, and written when nothing is chosen

}  // namespace

void propProdListGeneral::Initialize() {
  for (int columns = 1; columns <= 4; ++columns) cboDisplayColumns.AddItem(std::to_string(columns));
  for (const Thumbnail& row : kThumbnails) cboDisplayThumbnail.AddItem(std::string(row.caption));
}

void propProdListGeneral::Fill(std::span<const FlagField> fields) const {
  for (const FlagField& field : fields)
    field.box.Value(ToFlag(SelectedControls(0).Get(field.property)));
}

void propProdListGeneral::Store(std::span<const FlagField> fields) const {
  for (const FlagField& field : fields) Write(field.property, field.box.Value());
}

void propProdListGeneral::SelectionChanged() {
  const Loading loading(*this);
  cboDisplayColumns.Text(Read("DisplayColumns"));
  txtTableWidth.Text(Read("TableWidth"));
  Fill(cellFlags_);
  Fill(linkFlags_);
  const auto* thumbnail = std::ranges::find(kThumbnails, Read("DisplayThumb"), &Thumbnail::value);
  cboDisplayThumbnail.ListIndex(
      thumbnail == std::end(kThumbnails) ? kLeft : static_cast<int>(thumbnail - kThumbnails));
  PropertyPage::Fill(texts_);
  if (txtDefaultExtension.Text().empty()) txtDefaultExtension.Text(std::string(kDefaultExtension));
}

void propProdListGeneral::ApplyChanges() {
  Write("DisplayColumns", cboDisplayColumns.Text());
  Write("TableWidth", txtTableWidth.Text());
  Store(cellFlags_);
  const int thumbnail = cboDisplayThumbnail.ListIndex();
  Write("DisplayThumb", kThumbnails[thumbnail == kNoRow ? kLeft : thumbnail].value);
  Store(linkFlags_);
  PropertyPage::Store(texts_);
}

}  // namespace kvo
