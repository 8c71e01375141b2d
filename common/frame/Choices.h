// The values that lists offer for properties, on property pages and in kvo-editor.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "common/values/Localized.h"
#include "common/values/Variant.h"

namespace kvo {

struct Choice {
  Message caption;
  Variant value;
};

// A data format. The caption ends with a formatted sample, if there is one.
struct DataFormat {
  std::string_view key;
  Localized caption;
  std::string_view function;
  std::string_view pattern;  // what the control stores
  Variant (*sample)() = nullptr;

  // The caption with its sample: "Ganzzahl (1.134)".
  Message CaptionWithSample() const;
};

// In list order.
std::span<const DataFormat> DataFormats();

namespace choices {

std::vector<Choice> Formats();  // their patterns
std::vector<Choice> Columns();
std::vector<Choice> Pixels();
std::vector<Choice> FontFamilies();
std::vector<Choice> FontSizes();
std::vector<Choice> Thumbnails();

}  // namespace choices
}  // namespace kvo
