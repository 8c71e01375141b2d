// Numbers of the module's resources.
#pragma once

namespace kvo::com {

// One for each control, in the order of the list of classes.
inline constexpr int kFirstToolboxBitmap = 101;

}  // namespace kvo::com
