// Performs a user's events in any form, read from a fuzzer's bytes, and checks a form's invariants.
#pragma once

#include <string>

#include "fuzz/Bytes.h"
#include "host/script/FormUser.h"

namespace kvo {

// The letters of the events; any other byte maps to one of them.
inline constexpr std::string_view kUserEvents = "fitkcordsbvxmw";

// Performs an event; the story supplies the control, the row, the text ...
//   f focus by keyboard   i click into a box   t type (to the line's end)   k press a key
//   c click               o choose a row       r select records             d double click a record
//   s select a grid row   b click its button   v choose its value           x open a tab
//   m fire a timer        w close the window
// Returns the outcome: "done", "error 91" when the page refuses, or "cannot be done" when a person
// could not do it either. Passes on all other exceptions.
std::string PerformEvent(char event, Form& form, FormUser& user, Bytes& story);

// Throws std::logic_error unless selections lie inside their texts and lists, at most one option of
// each group is chosen, and everything selected exists.
void DemandSoundForm(const Form& form);

}  // namespace kvo
