// Runs a language server over two streams.
#pragma once

#include <string>

#include "apps/language/Workspace.h"

namespace kvo::language {

enum class Ending {
  shutDown,     // the client said `shutdown` and then `exit`, or closed the stream
  notShutDown,  // it ended without `shutdown`
  noMessages,   // the input was not in the protocol
};

// Serves the client until it says `exit` or its stream ends. Takes every message that has come
// before it answers the first, so that a request can be cancelled and only the latest version of a
// page is checked. Throws std::system_error when reading or writing fails.
Ending Serve(int input, int output, PagesIn pagesIn, const std::string& version);

}  // namespace kvo::language
