// The fields of an office, as records need them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "common/values/Object.h"

namespace kvo::preview {

// The types of fields that are treated in a way of their own; all others are texts.
inline constexpr std::int32_t kNumberField = 1;
inline constexpr std::int32_t kFlagField = 3;
inline constexpr std::int32_t kDateField = 6;

struct OfficeField {
  std::string_view group;  // kCustomer or kOrder
  std::string sqlName;
  std::string displayName;
  std::int32_t dataType = 0;
};

// First the contact's fields, then the order's. Empty without an office; skips a list that it does
// not have.
std::vector<OfficeField> FieldsOf(const ObjectRef& office);

}  // namespace kvo::preview
