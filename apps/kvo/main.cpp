// kvo: saves, checks, inspects and publishes pages from a terminal or a build server.
#include <signal.h>  // NOLINT(modernize-deprecated-headers): the POSIX part is wanted

#include <initializer_list>
#include <new>

#include "apps/Version.h"
#include "apps/kvo/CommandLine.h"
#include "apps/kvo/Commands.h"
#include "apps/kvo/Terminal.h"
#include "document/page/File.h"
#include "host/headless/HeadlessPlatform.h"

namespace {

extern "C" void CleanUp(int signal) {
  kvo::page::RemoveUnfinishedFile();
  raise(signal);  // which ends the program now, so that its caller sees what ended it
}

// From now on, a signal that ends the program at once also removes the file that it is writing, so
// that nothing is left beside the page. Signals that the caller has ignored stay ignored.
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

kvo::ExitCode Run(int argc, char** argv) {
  kvo::HeadlessPlatform platform;
  const kvo::PlatformScope installed(platform);

  kvo::CommandLine line(kvo::ProgramVersion());
  kvo::AddWriteCommands(line);
  kvo::AddInspectCommand(line);
  kvo::AddCheckCommand(line);
  kvo::AddEditCommands(line);
  kvo::AddClassesCommand(line);
  kvo::AddPictureCommand(line);
  kvo::AddPagesCommand(line);
  kvo::AddScriptCommand(line);
  return line.Execute(argc, argv);
}

}  // namespace

int main(int argc, char** argv) {
  kvo::page::OccupyStandardStreams();
  CleanUpWhenEnded();
  try {
    return static_cast<int>(Run(argc, argv));
  } catch (const std::bad_alloc&) {
    // Also when it was a message that there was no memory for.
    kvo::PrintOutOfMemory();
    return static_cast<int>(kvo::ExitCode::failure);
  }
}
