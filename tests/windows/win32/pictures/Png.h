#pragma once

#include <windows.h>

#include <filesystem>

namespace kvo {

// Writes a bitmap as a PNG file. Returns false if it cannot, or if the bitmap has only one colour.
bool WritePng(HBITMAP bitmap, const std::filesystem::path& file);

}  // namespace kvo
