// A JSON text as a tree in which everything knows where it stands and keys that stand twice are
// both kept.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
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
};

// Why a text is no JSON, and where.
struct JsonError {
  std::size_t at;
  Message message;
};

std::variant<JsonNode, JsonError> ParseJson(std::string_view text);

}  // namespace kvo::office
