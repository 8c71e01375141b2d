// How kvo-editor and docs/controls.md present a property to users. Property pages have captions of
// their own.
#pragma once

#include <string_view>
#include <vector>

#include "common/frame/Choices.h"
#include "common/values/Localized.h"

namespace kvo {

enum class InputKind {
  ofType,  // yes or no for a flag, a line of text for anything else
  html,    // HTML of several lines
  color,
  officeField,  // a field of the host's office; also sets DisplayValue to the field's caption
  list,         // one of the choices
  openList,     // one of the choices, or any other text
};

struct PropertyInput {
  std::string_view property;
  Localized caption;
  Localized help;  // one line
  InputKind kind = InputKind::ofType;
  std::vector<Choice> (*choices)() = nullptr;
  bool advanced = false;  // for users who know the template engine
};

}  // namespace kvo
