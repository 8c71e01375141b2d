// Shows edits of a page as a unified diff, for people and for `git apply` and `patch -p1`.
#pragma once

#include <string>
#include <string_view>

#include "document/page/TextEdit.h"

namespace kvo::page {

// Returns the differences, with three lines around each; empty when the edits change nothing. Lines
// end with LF; their bytes are those of the page.
std::string UnifiedDiff(std::string_view file, std::string_view page, const TextEdits& edits);

}  // namespace kvo::page
