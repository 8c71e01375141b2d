// What can be written at a place of a page: classes, keys, values and fields.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "common/values/Localized.h"
#include "document/office/Office.h"
#include "document/page/Page.h"
#include "document/page/TextEdit.h"

namespace kvo::assist {

struct Offer {
  enum class Kind { controlClass, key, value, field, attribute };
  Kind kind = Kind::value;
  std::string label;
  Message detail;       // short; may be empty
  Message help;         // may be empty
  page::TextEdit edit;  // replaces what is typed there already
  // Where the author writes on: behind this many bytes of what is written.
  std::size_t caret = 0;
};

// Returns what fits there, in the order to show it. `office` may be nullptr.
std::vector<Offer> OffersAt(const page::Page& page, std::size_t place,
                            const office::Office::Description* office);

}  // namespace kvo::assist
