// The access list (ACL) of a file, which grants more, or less, than its mode says.
#pragma once

#include <string>

namespace kvo::page {

// Gives an open file, which is to replace the file `from`, the access list of that one, or none if
// that one has none: the file may have got another one from its folder. Answers 0, or the number of
// the error.
int CopyAccessList(const std::string& from, int to);

}  // namespace kvo::page
