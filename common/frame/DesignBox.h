// The design-time box: the small labelled picture of a control in the editor's design view.
// All measures are twips, 15 to a pixel; the font is Tahoma 8.25 point.
#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "common/frame/Platform.h"

namespace kvo {

class Control;

inline constexpr int kTwipsPerPixel = 15;
inline constexpr int kTwipsPerInch = 1440;

struct Rect {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
  bool operator==(const Rect&) const = default;
};

// A declared label. Shows its design-time caption until the first refresh, then what `caption`
// returns. A label without a width is as wide as its caption.
struct BoxLabel {
  std::string_view name{};
  std::string_view designCaption{};
  FontWeight weight = FontWeight::normal;
  Rect at{};
  std::string_view (*caption)(const Control&) = nullptr;
};

struct Box;

// How a class's box looks: the size as placed, the labels, the border shape (`shpBorder`, in the
// system's highlight colour, behind the labels) and the rule that lays them out on every resize.
struct BoxDesign {
  int width;
  int height;
  std::array<BoxLabel, 2> labels;  // a box with one label leaves the other without a name
  Rect border;
  void (*layOut)(Box& box, const Control& control);

  constexpr std::span<const BoxLabel> Labels() const {
    return std::span(labels).first(labels[1].name.empty() ? 1 : 2);
  }
};

// A box as it is drawn.
struct Box {
  struct Label {
    std::string_view name;
    std::string caption;
    FontWeight weight;
    Rect at;
  };

  int width = 0;
  int height = 0;
  Rect border;
  std::vector<Label> labels;
};

inline constexpr std::string_view kBorderName = "shpBorder";

// The caption of every `lblBasename`: DisplayBasename, or basename when that is empty.
std::string_view BasenameCaption(const Control& control);

// Layout rules of the boxes below.
void LayOutSideBySide(Box& box, const Control& control);
void LayOutCaption(Box& box, const Control& control);

// The boxes that several classes have. `lblBasename` is always the first label.
inline constexpr int kLineHeight = 390;
constexpr BoxLabel BasenameLabel(std::string_view designCaption, Rect at) {
  return {"lblBasename", designCaption, FontWeight::bold, at, BasenameCaption};
}

// A caption and a value side by side: as wide as both labels and 270.
constexpr BoxDesign SideBySideBox(std::string_view designBasename, std::string_view valueLabel,
                                  std::string_view designValue,
                                  std::string_view (*value)(const Control&)) {
  return {2700,
          kLineHeight,
          {BasenameLabel(designBasename, {120, 90, 0, 195}),
           BoxLabel{valueLabel, designValue, FontWeight::normal, {1200, 90, 0, 195}, value}},
          {15, 15, 2670, 360},
          LayOutSideBySide};
}

// The caption alone: as wide as it and 180.
constexpr BoxDesign CaptionBox(std::string_view designCaption, int captionTop, int borderTop,
                               int borderHeight) {
  return {2700,
          kLineHeight,
          {BasenameLabel(designCaption, {120, captionTop, 0, 195})},
          {15, borderTop, 2670, borderHeight},
          LayOutCaption};
}

// A wide box for a table. Unless `layOut` does more, it cannot be resized and nothing inside moves.
inline constexpr int kTableWidth = 7200;
inline constexpr int kTableHeight = 480;
void LayOutTable(Box& box, const Control& control);
constexpr BoxDesign TableBox(std::string_view designCaption,
                             void (*layOut)(Box&, const Control&) = LayOutTable) {
  return {kTableWidth,
          kTableHeight,
          {BasenameLabel(designCaption, {120, 120, 6930, 255})},
          {15, 15, kTableWidth - 30, kTableHeight - 30},
          layOut};
}

}  // namespace kvo
