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
  raise(signal);  // now ends the program, so that the caller sees the signal
}

// Makes signals that end the program remove the file being written first, so that nothing is left
// beside the page. Keeps signals ignored that the caller ignores.
void CleanUpWhenEnded() {
  for (const int signal : {SIGHUP, SIGINT, SIGPIPE, SIGTERM, SIGXCPU}) {
    struct sigaction former;
    if (sigaction(signal, nullptr, &former) != 0 || former.sa_handler == SIG_IGN) continue;
    struct sigaction action {};
    action.sa_handler = CleanUp;
    // Resets the handler before it runs, and does not block the signal inside it.
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
  kvo::AddPreviewCommand(line);
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
    // Also when memory ran out while making a message.
    kvo::PrintOutOfMemory();
    return static_cast<int>(kvo::ExitCode::failure);
  }
}
