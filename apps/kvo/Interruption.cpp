#include "apps/kvo/Interruption.h"

#include <signal.h>  // NOLINT(modernize-deprecated-headers): the POSIX part is wanted

#include <initializer_list>

#include "document/page/File.h"

namespace kvo {
namespace {

extern "C" void CleanUp(int signal) {
  page::RemoveUnfinishedFile();
  raise(signal);  // which ends the program now, so that its caller sees what ended it
}

}  // namespace

void CleanUpWhenEnded() {
  for (const int signal : {SIGHUP, SIGINT, SIGPIPE, SIGTERM, SIGXCPU}) {
    struct sigaction former;
    if (sigaction(signal, nullptr, &former) != 0 || former.sa_handler == SIG_IGN) continue;
    struct sigaction action {};
    action.sa_handler = CleanUp;
    // The handler is taken away before it runs, and the signal can reach the program in it.
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_NODEFER);
    sigemptyset(&action.sa_mask);
    sigaction(signal, &action, nullptr);
  }
}

}  // namespace kvo
