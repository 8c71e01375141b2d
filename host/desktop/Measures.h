// Sizes, in twips, where forms override the toolkit's defaults.
#pragma once

namespace kvo {

inline constexpr int kGridRowHeight = 270;
inline constexpr int kSwatchSize = 180;
// Multi-line boxes lower than this have no scroll bar.
inline constexpr int kTwoLines = 600;
// Frames up to this height are drawn as a line.
inline constexpr int kThickestLine = 60;

}  // namespace kvo
