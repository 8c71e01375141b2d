#include "controls/DTCProductList.h"

#include <limits>

#include "common/frame/TagWriter.h"

namespace kvo {
namespace {

constexpr int kSmallestPixelWidth = 100;

// The box's width in twips for a width in pixels of at least 100; 0 for any other width text.
int WidthInTwips(std::string_view tableWidth) {
  const auto pixels = ParseNumber(tableWidth);
  if (!pixels || !(*pixels >= kSmallestPixelWidth)) return 0;
  constexpr int kMostPixels = std::numeric_limits<int>::max() / kTwipsPerPixel;
  if (*pixels > kMostPixels) return 0;
  return static_cast<int>(*pixels) * kTwipsPerPixel;
}

const DTCProductList& List(const Control& control) {
  return static_cast<const DTCProductList&>(control);
}

}  // namespace

void DTCProductList::EmitColumns(const PropertyRow& row, const Control& control, TagWriter& tag) {
  if (List(control).DisplayColumns() > 0) EmitAlways(row, control, tag);
}

// Deliberate: a font family emits the size, even an empty one.
void DTCProductList::EmitFontSize(const PropertyRow& row, const Control& control, TagWriter& tag) {
  if (!List(control).FontFamily().empty()) EmitAlways(row, control, tag);
}

// Deliberate: entities for "<", ">" and quotes, but no ampersand fix.
void DTCProductList::EmitHeadline(const PropertyRow& row, const Control& control, TagWriter& tag) {
  const std::string& headline = List(control).Headline();
  if (!headline.empty()) tag.AttributeWith(row.key, headline, AppendEncodeHtmlEntities);
}

void DTCProductList::EmitNewGuid(const PropertyRow& row, const Control& control, TagWriter& tag) {
  if (List(control).CacheObject()) tag.AttributeAsIs(row.key, CreateGUID());
}

void DTCProductList::Resize() {
  Control::Resize();
  if (const int width = WidthInTwips(TableWidth()); width > 0) laidOutWidth_ = width;
}

void DTCProductList::LayOut(Box& box, const Control& control) {
  const int width = WidthInTwips(List(control).TableWidth());
  box.width = width > 0 ? width : kTableWidth;
  box.height = kTableHeight;
  const int laidOutWidth = List(control).laidOutWidth_;
  if (laidOutWidth == 0) return;
  box.border.width = laidOutWidth - 30;
  box.border.left = 15;
  Rect& caption = box.labels[0].at;
  caption.width = laidOutWidth - 240;
  caption.left = 120;
}

}  // namespace kvo
