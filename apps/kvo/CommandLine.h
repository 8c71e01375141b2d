// The commands of the program, declared with their arguments, options and help.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "apps/kvo/Terminal.h"

namespace kvo {

// " Did you mean ...?" in the user's language, or nothing when no name is near.
std::string DidYouMean(std::string_view word, const std::vector<std::string_view>& names);

// A text that is the same in both languages.
constexpr Localized Both(std::string_view text) { return {text, text}; }

// One command. Values are written into the given variables before `Run`'s function is called;
// they must live as long as the command line.
class Command {
 public:
  virtual ~Command() = default;

  // An argument by its place. A missing one is wrong use.
  virtual Command& Argument(const std::string& name, std::string& value, Localized meaning) = 0;
  // All further arguments: at least one when `required`.
  virtual Command& Arguments(const std::string& name, std::vector<std::string>& values,
                             Localized meaning, bool required) = 0;
  // An option with a value, such as "-o" "OUT".
  virtual Command& Option(const std::string& flags, const std::string& valueName,
                          std::string& value, Localized meaning) = 0;
  virtual Command& Flag(const std::string& flags, bool& value, Localized meaning) = 0;
  virtual void Run(std::function<ExitCode()> action) = 0;
};

class CommandLine {
 public:
  explicit CommandLine(std::string_view version);
  CommandLine(const CommandLine&) = delete;
  CommandLine& operator=(const CommandLine&) = delete;
  ~CommandLine();

  // `examples` are shown as they stand, one per line, under the command's help.
  Command& Add(const std::string& name, Localized summary, Localized examples);

  // Parses, runs the named command and reports failures on standard error.
  ExitCode Execute(int argc, char** argv);

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace kvo
