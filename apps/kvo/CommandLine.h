// The commands of the program, declared with their arguments, options and help.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "apps/kvo/Terminal.h"

namespace kvo {

// Returns " Did you mean ...?" in the user's language; empty when no name is near.
std::string DidYouMean(std::string_view word, const std::vector<std::string_view>& names);

// Returns a text that is the same in both languages.
constexpr Localized Both(std::string_view text) { return {text, text}; }

// One command. Writes values into the given variables before calling `Run`'s function; the
// variables must outlive the command line.
class Command {
 public:
  virtual ~Command() = default;

  // Adds a required positional argument.
  virtual Command& Argument(const std::string& name, std::string& value, Localized meaning) = 0;
  // Adds all further arguments: at least one when `required`.
  virtual Command& Arguments(const std::string& name, std::vector<std::string>& values,
                             Localized meaning, bool required) = 0;
  // Adds an option with a value, such as "-o" "OUT".
  virtual Command& Option(const std::string& flags, const std::string& valueName,
                          std::string& value, Localized meaning) = 0;
  virtual Command& Flag(const std::string& flags, bool& value, Localized meaning) = 0;
  // Sets the exit code of wrong use and failures, in place of ExitCode::failure.
  virtual Command& FailsWith(ExitCode code) = 0;
  // Says what the command's exit codes mean, from 0.
  virtual Command& ExitCodes(std::vector<Localized> meanings) = 0;
  virtual void Run(std::function<ExitCode()> action) = 0;
};

class CommandLine {
 public:
  explicit CommandLine(std::string_view version);
  CommandLine(const CommandLine&) = delete;
  CommandLine& operator=(const CommandLine&) = delete;
  ~CommandLine();

  // Shows `examples` unchanged, one per line, in the command's help.
  Command& Add(const std::string& name, Localized summary, Localized examples);

  // Parses, runs the named command and reports failures on standard error.
  ExitCode Execute(int argc, char** argv);

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace kvo
