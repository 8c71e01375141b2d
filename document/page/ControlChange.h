// Changes the properties of a control where it stands in a page.
#pragma once

#include <functional>

#include "document/page/Page.h"
#include "document/page/TextEdit.h"

namespace kvo::page {

struct ControlChange {
  TextEdits edits;    // empty when nothing changes, or on errors
  Problems problems;  // why the control cannot be changed; their places are in the page
};

// Returns the edits that make the page's control hold what `change` sets. An element stays an
// element, in which only the params with other values are written; a saved span gets its new
// runtime text. A span whose text was edited by hand is a problem unless `force` is set. The
// control must not be broken. Passes on what `change` throws.
ControlChange ChangeControl(const Page& page, const FoundControl& found,
                            const std::function<void(Control&)>& change, bool force = false);

}  // namespace kvo::page
