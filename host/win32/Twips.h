#pragma once

namespace kvo {

// Forms are measured in twips, 1440 to the inch. The inch is the logical one of the screen, by
// which its fonts are measured as well: 15 twips are a pixel at 96 dots to the inch.
int ToPixels(int twips);

// Dots to the logical inch of the screen.
int ScreenResolution();

}  // namespace kvo
