// Lists what changed between two versions of a page, by control and property.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "common/values/Localized.h"
#include "document/compare/Version.h"
#include "document/page/Problem.h"

namespace kvo::compare {

// Lines of a page, from 1. With a count of 0, the place before `first`.
struct Lines {
  std::size_t first = 1;
  std::size_t count = 0;
  bool operator==(const Lines&) const = default;
};

struct PropertyChange {
  Message name;
  // Nothing where the control has no such attribute, or its runtime text is not edited by hand.
  std::optional<std::string> before;
  std::optional<std::string> after;
};

struct Difference {
  enum class Kind {
    added,
    removed,
    moved,
    changed,    // its properties, or the runtime text that somebody edited
    saved,      // the element is a saved control now
    unsaved,    // the reverse
    rewritten,  // holds the same in other bytes: another layout or another new identifier
    text,       // outside the controls
  };

  Kind kind = Kind::text;
  // The control; its place in the old page is that of the new one's partner.
  std::string className;
  std::string id;
  Message name;
  std::optional<page::Place> oldPlace;
  std::optional<page::Place> newPlace;
  std::vector<PropertyChange> properties;  // Kind::changed
  Lines oldLines;                          // Kind::text
  Lines newLines;
};

// In the order of the pages; empty when their bytes are equal, and only then.
std::vector<Difference> Compare(const Version& before, const Version& after);

// Returns a difference on one line for each property: "Preis: Format #,##0 -> #,##0.00".
std::vector<Message> Describe(const Difference& difference);
// Returns the kind's name in JSON, which never changes.
std::string_view KindName(Difference::Kind kind);

// Returns the page as a text for line diffs: UTF-8, with a short name in place of each control and
// one line for each property below the line. Independent of the user's language. A page that cannot
// be read, or that holds no controls, stays as it is.
std::string Readable(const Version& version);

}  // namespace kvo::compare
