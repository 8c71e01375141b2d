// A user in front of any form, told by a fuzzer's bytes; and what holds for a form at any time.
#pragma once

#include <string>

#include "fuzz/Bytes.h"
#include "host/script/FormUser.h"

namespace kvo {

// What the next event of a story is; other bytes stand for one of them.
inline constexpr std::string_view kUserEvents = "fitkcordsbvxmw";

// Performs an event, for which the story names the control, the row, the text ...
//   f focus by keyboard   i click into a box   t type (to the line's end)   k press a key
//   c click               o choose a row       r select records             d double click a record
//   s select a grid row   b click its button   v choose its value           x open a tab
//   m time goes by        w close the window
// Returns what became of it: "done", "error 91" when the page refuses, or "cannot be done", which
// holds for a person as well. Anything else that is thrown comes out.
std::string PerformEvent(char event, Form& form, FormUser& user, Bytes& story);

// Throws std::logic_error unless selections lie inside their texts and lists, at most one option
// of each group is chosen, and what is selected is there.
void DemandSoundForm(const Form& form);

}  // namespace kvo
