#pragma once

#include <QFont>

#include "common/forms/FormControl.h"

namespace kvo {

// Forms are set in Tahoma. Where the system has no such family, the one that Wine brings along
// is loaded, once per process; without it a sans-serif font of about its width stands in.
void LoadTahoma();

// A form's font. Tahoma has to be loaded already.
QFont QtFont(const Font& font);

}  // namespace kvo
