// Renames a field or an id wherever a page uses it.
#pragma once

#include <string_view>
#include <vector>

#include "common/values/Localized.h"
#include "document/page/Page.h"
#include "document/page/TextEdit.h"
#include "document/uses/Uses.h"

namespace kvo::uses {

// Why a name cannot be renamed at all.
class RenameError : public LocalizedError {
 public:
  using LocalizedError::LocalizedError;
};

// Both names are of one kind.
struct Renaming {
  Name from;
  Name to;
};
// Reads what a user wrote: "customer.City" and "customer.Town", or two ids. Throws RenameError for
// a class, for names of two groups, and for what cannot be a name.
Renaming RenamingOf(std::string_view from, std::string_view to);

// A use that keeps its old name.
struct KeptUse {
  Use use;
  Message why;
};

struct Renamed {
  page::TextEdits edits;
  std::vector<Use> uses;  // those that get the new name, in page order
  std::vector<KeptUse> kept;
  // Where the page uses the new name already; nobody can tell the two apart afterwards.
  std::vector<Use> merged;
};

// Edits only the bytes of the name, in elements and in the text between them, and the runtime text
// that follows from them. Leaves captions of fields (DisplayValue) as they are. Takes time in
// proportion to the page. `found` is what the page uses.
Renamed Rename(const page::Page& page, const PageUses& found, const Renaming& renaming);
inline Renamed Rename(const page::Page& page, const Renaming& renaming) {
  return Rename(page, FindUses(page), renaming);
}

}  // namespace kvo::uses
