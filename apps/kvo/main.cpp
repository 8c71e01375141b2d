// kvo: saves, checks, inspects and publishes pages from a terminal or a build server.
#include "apps/kvo/CommandLine.h"
#include "apps/kvo/Commands.h"
#include "host/headless/HeadlessPlatform.h"

int main(int argc, char** argv) {
  kvo::HeadlessPlatform platform;
  const kvo::PlatformScope installed(platform);

  kvo::CommandLine line(KVO_VERSION);
  kvo::AddWriteCommands(line);
  kvo::AddInspectCommand(line);
  kvo::AddCheckCommand(line);
  kvo::AddEditCommands(line);
  kvo::AddClassesCommand(line);
  kvo::AddPictureCommand(line);
  kvo::AddPagesCommand(line);
  kvo::AddScriptCommand(line);
  return static_cast<int>(line.Execute(argc, argv));
}
