// Merges text as git does, by `git merge-file`.
#pragma once

#include <string>

#include "document/compare/Merge.h"

namespace kvo {

// What the conflict markers call the three versions.
struct VersionNames {
  std::string base;
  std::string ours;
  std::string theirs;
};

// Returns a function that runs `git merge-file`, which follows git's settings for the current
// folder (merge.conflictStyle). It throws Failure when git is missing or fails. Passes the texts in
// memory, so that no file is left behind, however the program ends.
compare::TextMerge GitMergeFile(VersionNames names);

}  // namespace kvo
