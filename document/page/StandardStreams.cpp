#include "document/page/StandardStreams.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <initializer_list>

namespace kvo::page {

void OccupyStandardStreams() {
  constexpr int kFailure = 2;
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(stream, F_GETFD) >= 0 || errno != EBADF) continue;
    // All numbers below are taken, so it gets this one. The root is always there, and opened as a
    // mere path it can be neither read nor written.
    if (open("/", O_PATH) != stream) _exit(kFailure);
  }
}

}  // namespace kvo::page
