// Merges what two sides made of one control, property by property.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "common/values/Localized.h"
#include "document/compare/Version.h"

namespace kvo::compare {

// A control of one version; without one where the version lacks it.
struct Side {
  const Version* version = nullptr;
  const page::FoundControl* control = nullptr;

  explicit operator bool() const { return control != nullptr; }
  std::string_view Bytes() const { return version->BytesOf(*control); }
};

struct MergedControl {
  std::string bytes;  // in the page's encoding; empty after a conflict
  // What both sides changed, on one line each: "Format: #,##0.00 | #,##0.0".
  std::vector<Message> conflicts;
};

// `base` may be missing, when both sides added the control. The others are there, and all are of
// one class and in one encoding. A control that one side alone changed is that side's, byte for
// byte. A saved control gets the runtime text of its merged properties.
MergedControl MergeControl(const Side& base, const Side& ours, const Side& theirs);

// Whether the side's control differs in more than its form and layout.
bool IsChanged(const Side& base, const Side& side);

}  // namespace kvo::compare
