// Opening-only and closing-only elements, which must come in pairs.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "document/check/Check.h"

namespace kvo::check {

inline constexpr Rule kUnbalanced{"unbalanced-element", page::Severity::error};

// Is told of the tag-only elements of a page in their order, and says at the end which of them have
// no partner. A closing one belongs to the last opening one of its name that is still open.
class Balance {
 public:
  void Open(const std::string& name, const page::FoundControl& control);
  void Close(const std::string& name, const page::FoundControl& control);
  // Ends the page. Every message names both places where there are two.
  page::Problems Take();

 private:
  struct Tags {
    std::vector<const page::FoundControl*> open;
    const page::FoundControl* lastOpen = nullptr;
    const page::FoundControl* lastClose = nullptr;
  };
  std::map<std::string, Tags> names_;
  page::Problems problems_;
};

}  // namespace kvo::check
