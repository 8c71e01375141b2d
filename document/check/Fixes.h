// Fixes for problems that have one sure answer.
#pragma once

#include <string>

#include "document/page/Page.h"

namespace kvo::check {

// Titles that several rules share.
Message ChangeTitle(const std::string& from, const std::string& to);

// Adds fixes to problems that page::Check reported, wherever checking the fixed control shows that
// the problem is gone and saving it meets no other. Spends time in proportion to the page; a page
// with very many problems gets fixes for the first of them.
void AddPageFixes(const page::Page& page, const std::vector<page::FoundControl>& controls,
                  page::Problems& problems);

}  // namespace kvo::check
