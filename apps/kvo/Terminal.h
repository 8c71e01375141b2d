// What the program knows about the person in front of it: language, colours, and how to talk.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

#include "common/values/Localized.h"
#include "document/page/Problem.h"

namespace kvo {

// What the program answers to its caller.
enum class ExitCode { good = 0, problemsFound = 1, failure = 2 };

// The worse of two outcomes.
constexpr ExitCode Worse(ExitCode a, ExitCode b) { return a < b ? b : a; }

// A wrong use or a failure that ends the command: one message, exit code 2. The text says what to
// do and is already in the user's language.
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A message on standard error behind "kvo: " and the word for an error, coloured on a terminal.
void PrintError(std::string_view message);
// A line on standard error that is no complaint.
void Tell(std::string_view line);
// The message that there is no memory; needs none itself.
void PrintOutOfMemory();

// What is told of a page's problems, one per line: `check` prints them as its result on standard
// output, everything else as complaints on standard error.
enum class Stream { output, error };
void ShowProblems(Stream stream, std::string_view file, const page::Problems& problems);

// Text on standard output; on a terminal, control characters are replaced. A Failure when it can't
// be written (full disk, ...).
void Print(std::string_view text);
// Hands everything printed so far to the system; failures as in Print.
void FlushOutput();

}  // namespace kvo
