// The formats in which `kvo check` tells what it found.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "apps/kvo/Terminal.h"
#include "document/page/Page.h"

namespace kvo {

// Collects the findings of pages, or prints them at once.
class CheckReport {
 public:
  virtual ~CheckReport() = default;

  // Pages come in their order.
  virtual void Add(const std::string& file, const page::Page& page,
                   const page::Problems& problems) = 0;
  // Prints what was collected.
  virtual void Finish() {}
};

// Returns the format of this name: text, json, sarif, github or junit. Throws Failure for another.
// `text` is where the format "text" goes.
std::unique_ptr<CheckReport> NewCheckReport(std::string_view format, Stream text);

}  // namespace kvo
