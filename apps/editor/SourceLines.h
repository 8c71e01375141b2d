// Translates the places of problems to the source view. They count lines of the file, where a
// control may span several; in the source view it is one character.
#pragma once

#include <string_view>
#include <vector>

#include "apps/editor/PageText.h"
#include "document/page/Problem.h"

namespace kvo::editor {

class SourceLines {
 public:
  // Both must outlive it.
  SourceLines(std::string_view page, const PageText::Places& places)
      : page_(page), places_(places) {}

  // Translates the problem's place, and the line in its message.
  void Translate(page::Problem& problem);

 private:
  std::string Translated(const std::string& message);
  std::size_t LineOf(std::size_t fileLine);

  std::string_view page_;
  const PageText::Places& places_;
  std::vector<std::size_t> fileLines_;  // their offsets; filled on first use
};

}  // namespace kvo::editor
