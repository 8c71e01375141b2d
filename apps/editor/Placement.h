// Whether controls can stand where they are about to be inserted, and what can stand there instead.
#pragma once

#include <optional>

#include "apps/editor/PageText.h"
#include "common/values/Localized.h"
#include "document/page/Problem.h"

namespace kvo::editor {

// A part of a page that is about to replace a stretch of it.
struct Insertion {
  PageText part;
  int begin = 0;
  int end = 0;
};

// Why the controls of a part cannot stand there.
struct Misplacement {
  Message message;  // with the place, and the runtime text if it is offered
  // The part with its misplaced controls replaced by their runtime texts. Nothing if one of these
  // is not a single tag, or would close the surrounding markup.
  std::optional<PageText> asText;
  // The quotes, positions in the page, around the value in which the part is to stand; they have to
  // become single ones.
  struct Quotes {
    int open;
    int close;
  };
  std::optional<Quotes> quotes;
};

// Nothing when all controls can stand where they would be.
std::optional<Misplacement> FindMisplacement(const PageText& page, const Insertion& insertion);

}  // namespace kvo::editor
