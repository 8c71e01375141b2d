// Measures programs from start to exit.
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>

#include "bench/Sections.h"
#include "bench/Stopwatch.h"

namespace kvo::bench {
namespace {

constexpr double kMostOfEmpty = 4;  // the goal for `kvo --version`

void Start(const std::vector<std::string>& command) {
  std::vector<char*> arguments;
  arguments.reserve(command.size() + 1);
  for (const std::string& argument : command)
    arguments.push_back(const_cast<char*>(argument.c_str()));  // not written to
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t child = 0;
  int status = 1;
  const int error =
      posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
  if (error == 0) waitpid(child, &status, 0);
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0 || status != 0) throw std::runtime_error(command[0] + " failed");
}

}  // namespace

void MeasureStart(Report& report, const std::string& kvo, const std::string& empty) {
  struct Program {
    const char* name;
    std::vector<std::string> command;
  };
  const std::string page = "examples/newsletter/newsletter.html";
  const Program programs[] = {
      {"an empty C++ program", {empty}},
      {"`kvo --version`", {kvo, "--version"}},
      {"`kvo publish` of the example", {kvo, "publish", page, "-o", "/dev/null"}},
      {"Perl, empty script", {"perl", "-e", ""}},
      {"Python, empty script", {"python3", "-c", ""}},
  };
  Stopwatch stopwatch(Clock::wall);
  for (const Program& program : programs)
    stopwatch.Add(program.name, [&program] { Start(program.command); });
  const Times times = stopwatch.Run();

  const double none = times.at(programs[0].name);
  std::vector<std::vector<std::string>> rows;
  for (const Program& program : programs) {
    const double ratio = times.at(program.name) / none;
    const bool isGoal = &program == &programs[1];
    rows.push_back({program.name, Duration(times.at(program.name)),
                    isGoal ? report.AtMost(ratio, kMostOfEmpty) : Figure(ratio)});
  }
  report.Heading("Start-up");
  report.Paragraph("Wall-clock time from start to exit. `kvo --version` may take at most " +
                   Figure(kMostOfEmpty) + " times as long as an empty program.");
  report.Table({"program", "time", "/ empty program"}, rows);
}

}  // namespace kvo::bench
