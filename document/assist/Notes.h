// What stands at a place of a page: a class, a property, a field.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "common/values/Localized.h"
#include "document/office/Office.h"
#include "document/page/Page.h"

namespace kvo::assist {

struct Note {
  std::size_t begin = 0;  // what it is about
  std::size_t end = 0;
  Localized title;
  std::string name;     // as it is written in the page; may be empty
  Message help;         // may be empty
  std::string runtime;  // the runtime text of the control there; may be empty
};

// Returns nothing where the page's own text names no field. `controls` are those of the page;
// `office` may be nullptr.
std::optional<Note> NoteAt(const page::Page& page, const std::vector<page::FoundControl>& controls,
                           std::size_t place, const office::Office::Description* office);

}  // namespace kvo::assist
