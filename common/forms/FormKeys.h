// What keys mean to a form, whoever shows it. A page never includes this file.
#pragma once

#include <string_view>
#include <vector>

#include "common/forms/Form.h"

namespace kvo {

// Whether the tab key stops at a control. A group of option buttons is entered at its chosen one,
// or at the first while none is chosen.
bool IsTabStop(const FormControl& control);
// Of the option buttons in a container the one at which they are entered, as far as the container
// itself is; nullptr when none can be.
const OptionButton* OptionTabStop(const Container& group);
// The option button that the arrow keys choose, 1 forwards and -1 backwards; the last one is
// followed by the first. nullptr when the user cannot be at `button`.
OptionButton* NextOption(const OptionButton& button, int step);

// The button that the enter or the escape key presses in a dialog; nullptr when there is none.
CommandButton* DialogButton(const Form& form, CommandButton::Role role);

// What a single line takes of a typed or pasted text: it ends at the first line break or NUL.
std::string_view OneLine(std::string_view typed);

// A typed text key by key: each character by itself; CR LF and LF are the enter key.
inline constexpr std::string_view kEnterStroke = "\n";
std::vector<std::string_view> SplitStrokes(std::string_view text);

}  // namespace kvo
