// How long programs take from being started to being gone.
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>

#include "bench/Stopwatch.h"
#include "bench/sections.h"

namespace kvo::bench {
namespace {

// The goals: how many times as long as an empty program `kvo --version` takes, and how many times
// as long as that an interpreter needs.
constexpr double kMostOfEmpty = 4;
constexpr double kLeastOfInterpreters = 10;

void Start(const std::vector<std::string>& command) {
  std::vector<char*> arguments;
  arguments.reserve(command.size() + 1);
  for (const std::string& argument : command)
    arguments.push_back(const_cast<char*>(argument.c_str()));  // is not written to
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
    bool interpreter;
  };
  const std::string page = "examples/newsletter/newsletter.html";
  const Program programs[] = {
      {"an empty C++ program", {empty}, false},
      {"`kvo --version`", {kvo, "--version"}, false},
      {"`kvo publish` of the example", {kvo, "publish", page, "-o", "/dev/null"}, false},
      {"Python, nothing to do", {"python3", "-c", ""}, true},
      {"Python with its HTML parser", {"python3", "-c", "import html.parser"}, true},
      {"Perl, nothing to do", {"perl", "-e", ""}, false},
      {"Node, nothing to do", {"node", "-e", ""}, true},
  };
  Stopwatch stopwatch(Clock::wall);
  for (const Program& program : programs)
    stopwatch.Add(program.name, [&program] { Start(program.command); });
  const Times times = stopwatch.Run();

  const double none = times.at(programs[0].name);
  const double ours = times.at(programs[1].name);
  std::vector<std::vector<std::string>> rows;
  for (const Program& program : programs) {
    const double time = times.at(program.name);
    rows.push_back(
        {program.name, Duration(time),
         &program == &programs[1] ? report.AtMost(time / none, kMostOfEmpty) : Figure(time / none),
         program.interpreter ? report.AtLeast(time / ours, kLeastOfInterpreters)
                             : Figure(time / ours)});
  }
  report.Heading("Start-up");
  report.Paragraph(
      "From start to end by the wall clock. `kvo --version` may take " + Figure(kMostOfEmpty) +
      " times as long as an empty program; an interpreter that has nothing to do, which is the "
      "least that a tool written for it takes, is to need " +
      Figure(kLeastOfInterpreters) + " times as long as that.");
  report.Table({"program", "time", "/ empty program", "/ kvo --version"}, rows);
}

}  // namespace kvo::bench
