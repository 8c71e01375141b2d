// Names that people type: their suggestions when mistyped, and the looking up of classes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/frame/Control.h"

namespace kvo {

// " Did you mean ...?" in the user's language, or nothing when no name is near.
std::string DidYouMean(std::string_view word, const std::vector<std::string_view>& names);

// The class of a name, without regard to case. A Failure, with a suggestion, when there is none.
const ControlClass& ClassNamed(std::string_view name);

// "NAME=VALUE" as the user typed it.
struct Assignment {
  std::string name;
  std::string value;
};
// Splits at the first "="; a Failure without one.
std::vector<Assignment> ParseAssignments(const std::vector<std::string>& words);

// Sets properties by name, in the given order. A Failure names the property: an unknown one with a
// suggestion, a value that the property refuses with the reason.
void Assign(Control& control, const std::vector<Assignment>& assignments);

}  // namespace kvo
