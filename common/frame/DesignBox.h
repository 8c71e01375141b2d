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

// A label as it is declared: its design-time caption shows until the first refresh, then what
// `caption` answers. An auto-size label is as wide as its caption, whatever `at` says.
struct BoxLabel {
  std::string_view name;
  std::string_view designCaption;
  FontWeight weight = FontWeight::normal;
  Rect at;
  bool autoSize = true;
  std::string_view (*caption)(const Control&);
};

struct Box;

// How a class's box looks: the size as placed, the labels, the border shape (`shpBorder`, in the
// system's highlight colour, behind the labels) and the rule that lays them out on every resize.
struct BoxDesign {
  int width;
  int height;
  std::span<const BoxLabel> labels;
  Rect border;
  void (*layOut)(Box& box, const Control& control);
};

// A box as somebody looks at it.
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

// Layout rules shared by several classes. labels[0] is always `lblBasename`.

// Caption and value side by side: the box is as wide as both labels and 270, and 390 high.
void LayOutSideBySide(Box& box, const Control& control);
// The caption alone: the box is as wide as its caption and 180, and 390 high.
void LayOutCaption(Box& box, const Control& control);
// A box that cannot be resized: always 7200 by 480, nothing inside moves.
void LayOutFixed(Box& box, const Control& control);

// The caption of every `lblBasename`: DisplayBasename, or basename when that is empty.
std::string_view BasenameCaption(const Control& control);

// The labels and the box of the classes that show a caption and a value side by side.
using CaptionOf = std::string_view (*)(const Control&);
constexpr std::array<BoxLabel, 2> SideBySideLabels(std::string_view designBasename,
                                                   std::string_view valueLabel,
                                                   std::string_view designValue, CaptionOf value) {
  return {BoxLabel{"lblBasename",
                   designBasename,
                   FontWeight::bold,
                   {120, 90, 0, 195},
                   true,
                   BasenameCaption},
          BoxLabel{valueLabel, designValue, FontWeight::normal, {1200, 90, 0, 195}, true, value}};
}
constexpr BoxDesign SideBySideBox(std::span<const BoxLabel> labels) {
  return {2700, 390, labels, {15, 15, 2670, 360}, LayOutSideBySide};
}

// The box of the classes that show their caption alone.
constexpr std::array<BoxLabel, 1> CaptionLabel(std::string_view designCaption, int top) {
  return {BoxLabel{
      "lblBasename", designCaption, FontWeight::bold, {120, top, 0, 195}, true, BasenameCaption}};
}
constexpr BoxDesign CaptionBox(std::span<const BoxLabel> labels, int borderTop, int borderHeight) {
  return {2700, 390, labels, {15, borderTop, 2670, borderHeight}, LayOutCaption};
}

}  // namespace kvo
