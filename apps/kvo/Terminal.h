// Output for the user: in the user's language, with colours on a terminal.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/values/Localized.h"
#include "document/page/Problem.h"

namespace kvo {

// The program's exit code. git takes a merge driver's codes up to 128 for a conflict.
enum class ExitCode { good = 0, problemsFound = 1, failure = 2, driverFailed = 129 };

// The worse of two outcomes.
constexpr ExitCode Worse(ExitCode a, ExitCode b) { return a < b ? b : a; }

// Wrong use or a failure that ends the command: one message, exit code 2. The text is already in
// the user's language and says what to do.
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Prints "kvo: error: " and the message on standard error, coloured on a terminal.
void PrintError(std::string_view message);
// Prints an informational line on standard error.
void Tell(std::string_view line);
// Shows how far a long run has come, on standard error: on a terminal in one line, which the next
// status replaces and any other output removes.
void ShowStatus(std::string_view line);
bool IsStatusRewritten();
// Prints that memory ran out, without allocating any.
void PrintOutOfMemory();

// Prints a page's problems, one per line: on standard output as the result of `check`, on standard
// error for all other commands. Prints only the first few of each rule.
enum class Stream { output, error };
void ShowProblems(Stream stream, std::string_view file, const page::Problems& problems);
// Prints a line "file:line:column: label: ..." with its label in the colour of the severity.
void ShowLine(Stream stream, std::string_view file, page::Severity severity, std::string line);

// Prints text on standard output; on a terminal, replaces control characters. Throws Failure when
// it cannot be written (full disk, ...).
void Print(std::string_view text);
// Flushes everything printed so far; fails as Print does.
void FlushOutput();

// During its lifetime, holds back what the calling thread prints.
class HeldOutput {
 public:
  HeldOutput();
  HeldOutput(const HeldOutput&) = delete;
  HeldOutput& operator=(const HeldOutput&) = delete;
  ~HeldOutput();

  // What was held back, to be printed by any thread.
  struct Piece {
    Stream stream;
    std::string text;
  };
  using Pieces = std::vector<Piece>;
  Pieces Take() { return std::move(pieces_); }

  void Add(Stream stream, std::string_view text);

 private:
  Pieces pieces_;
};
void Print(const HeldOutput::Pieces& pieces);

}  // namespace kvo
