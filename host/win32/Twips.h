#pragma once

namespace kvo {

// Converts twips (1440 per inch) to pixels. The inch is the screen's logical one, as for fonts: at
// 96 dpi, a pixel is 15 twips.
int ToPixels(int twips);

// The screen's dots per logical inch.
int ScreenResolution();

}  // namespace kvo
