// Pages as the tests write them: "‹" and "›" enclose the selection, "|" is a caret, and "#" is a
// control.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "document/design/Changes.h"

namespace kvo::design {

struct MarkedPage {
  std::u16string source;
  std::size_t begin = 0;
  std::size_t end = 0;
};

std::u16string Wide(std::string_view utf8);
std::string Narrow(std::u16string_view text);

MarkedPage ReadMarked(std::string_view text);
std::string WriteMarked(const MarkedPage& page);

Rendering RenderingOf(const std::u16string& source);
// Goes the way of the editor: by the places in the browser's tree.
std::optional<Selection> SelectionOf(const Rendering& rendering, const MarkedPage& page);

void ApplyTo(std::u16string& source, const std::vector<Edit>& edits);

}  // namespace kvo::design
