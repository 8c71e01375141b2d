#pragma once

#include <string>
#include <string_view>

#include "common/frame/Platform.h"

namespace kvo {

// The colour dialog of a page. It keeps its colour from one opening to the next, black at first.
class ColorDialog {
 public:
  // Opens on `current`, unless that is empty: on white when it is no colour. Answers the colour as
  // "#RRGGBB", always: a cancel is not told apart and answers what the dialog opened on.
  std::string Choose(std::string_view current);

 private:
  ColorNumber color_ = 0;
};

}  // namespace kvo
