// The runtime tags of a page that become controls.
#pragma once

#include <vector>

#include "document/adopt/Adopt.h"
#include "document/adopt/Making.h"

namespace kvo::adopt {

// The finds are in page order and have no places yet.
std::vector<Find> FindTags(const page::Page& page, const page::Inspection& inspection,
                           const Mapping& mapping, const FieldCaptions& captions);

}  // namespace kvo::adopt
