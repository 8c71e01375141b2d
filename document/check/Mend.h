// Makes the fixes that a page's problems offer.
#pragma once

#include <functional>
#include <string>

#include "document/page/Page.h"

namespace kvo::check {

struct Mended {
  page::TextEdits edits;  // of the page as it was
  page::Problems fixed;   // each with the fix that was made, at its place when it was made
  page::Problems left;    // of the mended page
  std::string bytes;      // the mended page
};

// Makes all fixes that do not overlap, and those of the problems that then come to light, until
// none is left. `check` checks a page and adds the fixes.
Mended Mend(const page::Page& page, const std::function<page::Problems(const page::Page&)>& check);

}  // namespace kvo::check
