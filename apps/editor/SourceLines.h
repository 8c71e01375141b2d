// Problems as an author sees them: the page's own count the lines of the file, in which a control
// may have several; in the source view it is one character.
#pragma once

#include <string_view>
#include <vector>

#include "apps/editor/PageText.h"
#include "document/page/Problem.h"

namespace kvo::editor {

class SourceLines {
 public:
  // Both have to outlive it.
  SourceLines(std::string_view page, const PageText::Places& places)
      : page_(page), places_(places) {}

  // Gives the problem its place in the source view, and the line that its message names.
  void Translate(page::Problem& problem);

 private:
  std::string Translated(const std::string& message);
  std::size_t LineOf(std::size_t fileLine);

  std::string_view page_;
  const PageText::Places& places_;
  std::vector<std::size_t> fileLines_;  // where they begin; found when first asked for
};

}  // namespace kvo::editor
