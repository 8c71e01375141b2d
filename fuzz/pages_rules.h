// What must hold for the property pages of every control whatever a user does in them.
#pragma once

#include <string_view>

namespace kvo {

// A story has
// - a line with two characters: the class, and "0" for the class's own pages, else a page of any
//   class alone;
// - the control's bag as fuzz/StoryBag.h reads it, to an empty line;
// - events as fuzz/UserEvents.h reads them, in the page that shows, or of the frame around it:
//     A apply   P show another page   S the host selects the control again
//     G the database goes away or comes back   C the connection is closed or opened
//     N answer of the next prompt (a line)   F of the next colour dialog (three characters)
// Throws std::logic_error with the rule that is broken.
void CheckPages(std::string_view story);

}  // namespace kvo
