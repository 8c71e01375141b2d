// Numbers and dates as German reads them, by the patterns that templates use: the built-in
// formatter of every platform.
#pragma once

#include <string>
#include <string_view>

#include "common/values/Variant.h"

namespace kvo {

// A pattern with "#" or "0" writes a number: "0" is a digit that always shows, "#" one that shows
// when it counts, "," between them groups by thousands, "." begins the decimals. Halves round away
// from zero, as the number reads in decimal. "#,##0.00" of 1134.23 is "1.134,23".
//
// Any other pattern writes a date and time: d, dd, ddd, dddd (day, name of the day), m, mm, mmm,
// mmmm (month, its name; but minutes directly after an hour), yy, yyyy, h, hh, n, nn (minutes), s,
// ss. "dd. mmmm yyyy u\m hh:mm" gives "23. April 2004 um 16:09".
//
// In both, a backslash makes the next character stand for itself, text in double quotes stands as
// it is, and other characters are kept.
//
// A text is read as a number (ParseNumber) or as a date ("23.04.2004", "16:09:53", or both); one
// that reads as neither comes back as it is. A number by a date pattern counts days from
// 30.12.1899. Dates beyond the years 100 to 9999 come back as text.
std::string GermanFormat(const Variant& value, std::string_view pattern);

}  // namespace kvo
