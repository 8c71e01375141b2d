// How Qt's boxes show texts.
#pragma once

#include "common/forms/ShownText.h"

namespace kvo {

// With Lines::many, shows each line break (CR LF, CR or LF) as one LF and replaces characters that
// mean something else in a QTextDocument. Returns typed line breaks as CR LF.
extern const TextStyle kQtStyle;

}  // namespace kvo
