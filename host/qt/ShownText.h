// How Qt's boxes show texts.
#pragma once

#include "common/forms/ShownText.h"

namespace kvo {

// With Lines::many a line break, which is CR LF, CR or LF, is one LF, and characters that a
// document would take for something else have stand-ins. A line break that was typed is CR LF.
extern const TextStyle kQtStyle;

}  // namespace kvo
