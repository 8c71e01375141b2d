// Rules that reading an office file obeys, whatever its bytes.
#pragma once

#include <string_view>

namespace kvo::office {

// Throws std::logic_error with the broken rule.
void CheckOffice(std::string_view contents);

}  // namespace kvo::office
