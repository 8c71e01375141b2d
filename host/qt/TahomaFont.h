#pragma once

#include <QFont>

#include "common/forms/FormControl.h"

namespace kvo {

// Loads Tahoma, the font of forms, once per process. Where the system has none, loads Wine's file;
// if that is missing too, QtFont substitutes a sans-serif font of about the same width.
void LoadTahoma();

// Converts a form's font. Call LoadTahoma first.
QFont QtFont(const Font& font);

}  // namespace kvo
