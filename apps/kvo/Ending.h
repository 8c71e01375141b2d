// How the program ends at signals.
#pragma once

namespace kvo {

// From now on, signals that end the program first remove the files being written, so that nothing
// is left beside a page. Signals that the caller ignores stay ignored.
void CleanUpWhenEnded();

// During its lifetime, the first of the signals with which users end a program (SIGINT, SIGTERM,
// SIGHUP) only asks the program to stop. A second one ends it at once; so does a clock, should the
// program not end by itself.
class StopLater {
 public:
  StopLater();
  StopLater(const StopLater&) = delete;
  StopLater& operator=(const StopLater&) = delete;
  ~StopLater();
};

// The signal that asked to stop; 0 for none.
int StopSignal();

// Ends the program as the signal would have, so that the caller sees the signal.
[[noreturn]] void EndBySignal(int signal);

}  // namespace kvo
