// The placeholders of other systems in a page, and what they become.
#pragma once

#include <vector>

#include "document/adopt/Adopt.h"
#include "document/adopt/Making.h"
#include "document/adopt/Tags.h"

namespace kvo::adopt {

// `tags` are the page's runtime tags. Their insides are left alone, but for the contents of blocks,
// where placeholders become runtime tags: the find of such a block is moved from `tags` to its
// placeholders. The finds are in page order and have no places yet.
std::vector<Find> FindPlaceholders(const page::Page& page, const page::Inspection& inspection,
                                   FoundTags& tags, const Mapping& mapping,
                                   const FieldCaptions& captions, const ObjectRef& office);

}  // namespace kvo::adopt
