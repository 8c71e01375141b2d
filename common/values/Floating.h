// Floating-point numbers and their decimal text, the same in every locale.
#pragma once

#include <string>
#include <string_view>

namespace kvo {

// The double nearest to "12", "-1.5", "1.5e-7": ASCII digits on both sides of a point, if there is
// one, and an exponent, if there is one. Infinity or zero, with the text's sign, beyond all
// doubles.
double ReadFloating(std::string_view text);

// The fewest digits that read as this number: as fixed text or with an exponent, whichever is
// shorter. Never with an exponent by the second.
std::string ShortestText(double number);
std::string ShortestFixedText(double number);

}  // namespace kvo
