#include "fuzz/UsesRules.h"

#include <algorithm>
#include <set>
#include <string>

#include "document/uses/Rename.h"
#include "fuzz/Demand.h"
#include "host/headless/HeadlessPlatform.h"

namespace kvo::uses {
namespace {

constexpr std::size_t kMostRenamed = 4;

// Without that about the place of a declaration, which any longer name moves.
std::size_t Errors(const page::Page& page) {
  return static_cast<std::size_t>(
      std::ranges::count_if(page::Check(page), [](const page::Problem& problem) {
        return problem.severity == page::Severity::error &&
               problem.rule != page::rule::encodingChanges;
      }));
}

void CheckRename(const page::Page& page, const PageUses& found, const Name& name) {
  Renaming renaming{name, {name.kind, name.kind == Kind::controlId ? "i\"d" : "New-- Name"}};
  if (renaming.from == renaming.to) return;
  const Renamed renamed = Rename(page, found, renaming);
  Demand(renamed.uses.size() + renamed.kept.size() == UsesOf(name, found.uses).size(),
         "a use is neither renamed nor kept");
  page::TextEdits joined;
  Demand(page::Join(joined, renamed.edits) && joined == renamed.edits, "edits overlap");
  const page::Page after(page::Applied(page.Bytes(), renamed.edits));
  const PageUses now = FindUses(after);
  Demand(UsesOf(name, now.uses).size() == renamed.kept.size(), "the old name is still found");
  Demand(UsesOf(renaming.to, now.uses).size() == renamed.merged.size() + renamed.uses.size(),
         "the new name is not found where the old one was");
  Demand(now.uses.size() == found.uses.size(), "renaming adds or loses a use");
  Demand(Errors(after) == Errors(page), "renaming adds or mends an error");
}

}  // namespace

void CheckUses(std::string_view input) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  const page::Page page{std::string(input)};
  const PageUses found = FindUses(page);
  std::size_t last = 0;
  std::set<Name> names;
  for (const Use& use : found.uses) {
    Demand(last <= use.begin && use.begin <= use.end && use.end <= input.size(),
           "a use is out of place");
    last = use.begin;
    Demand(use.control == Use::kNoControl || use.control < found.controls.size(),
           "a use has no control");
    Excerpt(page, found.controls, use);
    if (use.name.kind != Kind::controlClass) names.insert(use.name);
  }
  std::size_t renamed = 0;
  for (const Name& name : names)
    if (++renamed <= kMostRenamed) CheckRename(page, found, name);
}

}  // namespace kvo::uses
