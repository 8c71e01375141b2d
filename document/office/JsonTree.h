// A JSON text as a tree. Every node knows its position; duplicate keys are all kept.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "document/page/Problem.h"

namespace kvo::office {

struct JsonNode {
  enum class Kind { null, flag, integer, number, text, list, object };

  Kind kind = Kind::null;
  std::size_t at = 0;                // offset in the text
  bool flag = false;                 // for flag
  std::string text{};                // for text
  std::int64_t integer = 0;          // for integer; the largest one for those beyond
  double number = 0;                 // for integer and number
  std::string key{};                 // for a member of an object
  std::size_t keyAt = 0;             // offset of its key
  std::vector<JsonNode> children{};  // for list and object, in order

  // Returns the member of an object; nullptr when there is none.
  const JsonNode* Find(std::string_view wanted) const {
    const auto found = std::ranges::find(children, wanted, &JsonNode::key);
    return found == children.end() ? nullptr : &*found;
  }
};

// Why a text is not JSON, and where.
struct JsonError {
  std::size_t at;
  Message message;
};

// Throws JsonError.
JsonNode ParseJson(std::string_view text);

}  // namespace kvo::office
