// The module's resource ids.
#pragma once

namespace kvo::com {

// The first of the controls' bitmaps, which are in the order of the list of classes.
inline constexpr int kFirstToolboxBitmap = 101;

}  // namespace kvo::com
