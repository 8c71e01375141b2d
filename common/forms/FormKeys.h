// Keyboard rules that all renderers share. Pages never include this file.
#pragma once

#include <string_view>
#include <vector>

#include "common/forms/Form.h"

namespace kvo {

// Whether the Tab key stops at a control. It enters a group of option buttons at the chosen one, or
// at the first while none is chosen.
bool IsTabStop(const FormControl& control);
// The tab stop among the option buttons of a container; nullptr when none is enabled and visible.
// Ignores whether the container itself is reachable.
const OptionButton* OptionTabStop(const Container& group);
// The option button that an arrow key chooses, wrapping around; `step` is 1 forwards and -1
// backwards. nullptr when the user cannot reach `button`.
OptionButton* NextOption(const OptionButton& button, int step);

// The dialog's button for the Enter or the Escape key; nullptr when there is none.
CommandButton* DialogButton(const Form& form, CommandButton::Role role);

// The part of a typed or pasted text that a single-line box accepts: up to the first line break or
// NUL.
std::string_view OneLine(std::string_view typed);

// Splits a typed text into keystrokes: one per character; CR LF and LF are the Enter key.
inline constexpr std::string_view kEnterStroke = "\n";
std::vector<std::string_view> SplitStrokes(std::string_view text);

}  // namespace kvo
