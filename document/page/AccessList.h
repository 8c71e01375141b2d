// The access control list of a file, which grants more or less than its mode.
#pragma once

#include <string>

namespace kvo::page {

// Copies the access list of `from` to an open file that will replace it. Removes the list when
// `from` has none, because a new file may inherit one from its folder. Returns 0 or the error
// number.
int CopyAccessList(const std::string& from, int to);

}  // namespace kvo::page
