#pragma once

#include <windows.h>

#include <filesystem>

namespace kvo {

// Writes a bitmap as a PNG file; false when it cannot be written, or is all of one colour.
bool WritePng(HBITMAP bitmap, const std::filesystem::path& file);

}  // namespace kvo
