// The placeholders of other systems in a page, and what they become.
#pragma once

#include <vector>

#include "document/adopt/Adopt.h"
#include "document/adopt/Making.h"

namespace kvo::adopt {

// `tags` are the finds of runtime tags, whose insides are left alone. The finds are in page order
// and have no places yet.
std::vector<Find> FindPlaceholders(const page::Page& page, const page::Inspection& inspection,
                                   const std::vector<Find>& tags, const Mapping& mapping,
                                   const FieldCaptions& captions, const ObjectRef& office);

}  // namespace kvo::adopt
