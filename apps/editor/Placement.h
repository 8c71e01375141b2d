// Checks whether controls are allowed where they are about to be inserted, and what can be inserted
// instead.
#pragma once

#include <optional>

#include "apps/editor/PageText.h"
#include "common/values/Localized.h"
#include "document/page/Problem.h"

namespace kvo::editor {

// A part about to replace [begin, end) of a page.
struct Insertion {
  PageText part;
  int begin = 0;
  int end = 0;
};

// Why the controls of a part are not allowed there.
struct Misplacement {
  Message message;  // with the place, and the runtime text if offered
  // The part with its misplaced controls replaced by their runtime texts. Nothing if a runtime text
  // is not a single tag or would close the surrounding markup.
  std::optional<PageText> asText;
  // The positions of the quotes around the surrounding value, which must become single quotes.
  struct Quotes {
    int open;
    int close;
  };
  std::optional<Quotes> quotes;
};

// Returns nothing when all controls are allowed there.
std::optional<Misplacement> FindMisplacement(const PageText& page, const Insertion& insertion);

}  // namespace kvo::editor
