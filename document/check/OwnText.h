// The text of a page between its controls.
#pragma once

#include "document/check/Check.h"
#include "document/check/Fields.h"

namespace kvo::check {

// Unknown fields in it, each at its own place.
page::Problems CheckOwnText(const page::Page& page, const std::vector<page::FoundControl>& controls,
                            KnownFields& fields);

}  // namespace kvo::check
