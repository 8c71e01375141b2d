// A page that shows another one in a frame of a given width.
#pragma once

#include <string>
#include <string_view>

#include "document/page/Encoding.h"

namespace kvo {

// Returns a page in UTF-8. The frame holds the whole inner page, whose media queries see the
// frame's width, and in which neither scripts nor forms work. It scrolls without a bar, which would
// take a part of the width.
std::string FramedPage(std::string_view inner, const page::PageEncoding& encoding, int width,
                       std::string_view title);

}  // namespace kvo
