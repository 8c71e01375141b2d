// What happens when somebody ends the program while it works.
#pragma once

namespace kvo {

// From now on, a signal that ends the program at once also removes the file that it is writing, so
// that nothing is left beside the page. Signals that the caller has ignored stay ignored.
void CleanUpWhenEnded();

}  // namespace kvo
