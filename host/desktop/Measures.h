// How large forms are planned, in twips, where a toolkit would have it otherwise.
#pragma once

namespace kvo {

inline constexpr int kGridRowHeight = 270;
inline constexpr int kSwatchSize = 180;
// A lower box for several lines has no room for a scroll bar.
inline constexpr int kTwoLines = 600;
// A frame that is no higher is a line.
inline constexpr int kThickestLine = 60;

}  // namespace kvo
