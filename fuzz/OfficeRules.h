// What must hold for office files whatever bytes they are made of.
#pragma once

#include <string_view>

namespace kvo::office {

// Throws std::logic_error with the rule that is broken.
void CheckOffice(std::string_view contents);

}  // namespace kvo::office
