// kvo: saves, checks, inspects and publishes pages from a terminal or a build server.
#include <new>

#include "apps/Version.h"
#include "apps/kvo/CommandLine.h"
#include "apps/kvo/Commands.h"
#include "apps/kvo/Ending.h"
#include "apps/kvo/Terminal.h"
#include "document/page/File.h"
#include "host/headless/HeadlessPlatform.h"

namespace {

kvo::ExitCode Run(int argc, char** argv) {
  kvo::HeadlessPlatform platform;
  const kvo::PlatformScope installed(platform);

  kvo::CommandLine line(kvo::ProgramVersion());
  kvo::AddWriteCommands(line);
  kvo::AddInspectCommand(line);
  kvo::AddCheckCommand(line);
  kvo::AddEditCommands(line);
  kvo::AddCompareCommands(line);
  kvo::AddClassesCommand(line);
  kvo::AddPictureCommand(line);
  kvo::AddPreviewCommand(line);
  kvo::AddAdoptCommand(line);
  kvo::AddPagesCommand(line);
  kvo::AddScriptCommand(line);
  kvo::AddLanguageCommand(line);
  kvo::AddRefsCommand(line);
  kvo::AddRenameCommand(line);
  return line.Execute(argc, argv);
}

}  // namespace

int main(int argc, char** argv) {
  kvo::page::OccupyStandardStreams();
  kvo::CleanUpWhenEnded();
  try {
    return static_cast<int>(Run(argc, argv));
  } catch (const std::bad_alloc&) {
    // Also when memory ran out while making a message.
    kvo::PrintOutOfMemory();
    return static_cast<int>(kvo::ExitCode::failure);
  }
}
