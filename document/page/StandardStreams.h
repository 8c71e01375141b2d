// For the start of every program that writes files.
#pragma once

namespace kvo::page {

// Occupies those of the descriptors 0, 1 and 2 that the program was started without. Otherwise the
// next file that is opened gets such a number, and what is meant for standard error ends up in it.
// Reading from them and writing to them fails, as it does with closed ones. To be called first of
// all; ends the program when that is not possible.
void OccupyStandardStreams();

}  // namespace kvo::page
