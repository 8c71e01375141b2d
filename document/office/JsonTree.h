// A JSON text as a tree in which everything knows where it stands and keys that stand twice are
// both kept.
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
  std::string text{};                // of kind text
  std::int64_t integer = 0;          // of kind integer
  std::string key{};                 // of a member of an object
  std::size_t keyAt = 0;             // where its key stands
  std::vector<JsonNode> children{};  // of kinds list and object, in their order

  // The member of an object; nullptr when there is none.
  const JsonNode* Find(std::string_view wanted) const {
    const auto found = std::ranges::find(children, wanted, &JsonNode::key);
    return found == children.end() ? nullptr : &*found;
  }
};

// Why a text is no JSON, and where.
struct JsonError {
  std::size_t at;
  Message message;
};

// Throws JsonError.
JsonNode ParseJson(std::string_view text);

}  // namespace kvo::office
