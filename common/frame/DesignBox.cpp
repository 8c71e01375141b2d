#include "common/frame/DesignBox.h"

namespace kvo {
namespace {

constexpr int kCaptionLeft = 120;

void StretchBorder(Box& box) {
  box.border.left = 15;
  box.border.width = box.width - 30;
}

}  // namespace

void LayOutSideBySide(Box& box, const Control&) {
  Rect& caption = box.labels[0].at;
  Rect& value = box.labels[1].at;
  box.width = value.width + caption.width + 270;
  box.height = kLineHeight;
  StretchBorder(box);
  caption.left = kCaptionLeft;
  value.left = caption.left + caption.width + 30;
}

void LayOutCaption(Box& box, const Control&) {
  box.width = box.labels[0].at.width + 180;
  box.height = kLineHeight;
  StretchBorder(box);
  box.labels[0].at.left = kCaptionLeft;
}

void LayOutTable(Box& box, const Control&) {
  box.width = kTableWidth;
  box.height = kTableHeight;
}

}  // namespace kvo
