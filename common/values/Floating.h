// Floating-point numbers and their decimal text, the same in every locale.
#pragma once

#include <string>
#include <string_view>

namespace kvo {

// Parses "12", "-1.5" or "1.5e-7" to the nearest double. A point needs digits on both sides. A
// number out of range becomes infinity or zero, with its sign.
double ReadFloating(std::string_view text);

// Writes the fewest digits that read back as this number. The first chooses the shorter of fixed
// and exponent notation; the second always writes fixed notation.
std::string ShortestText(double number);
std::string ShortestFixedText(double number);

}  // namespace kvo
