// Fixes for problems that have one sure answer.
#pragma once

#include <functional>
#include <string>

#include "document/page/Page.h"

namespace kvo::check {

// Titles that several rules share.
Message ChangeTitle(const std::string& from, const std::string& to);

// Checks a page for the fixes of AddPageFixes, without making any.
using Recheck = std::function<page::Problems(const page::Page&)>;

// Adds fixes to problems that page::Check reported, wherever writing the fix down shows that it
// removes its problem and adds no error. Spends time in proportion to the page; a page with very
// many problems gets fixes for the first of them.
void AddPageFixes(const page::Page& page, const page::Inspection& inspection,
                  page::Problems& problems, const Recheck& recheck);

}  // namespace kvo::check
