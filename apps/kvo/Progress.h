// How far a long run has come, shown on standard error.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

namespace kvo {

// Shows nothing during the first second; then, with the time that is left, several times a second
// in one line of a terminal, or a line every few seconds elsewhere.
class Progress {
 public:
  // Asks for the total only when it is shown.
  explicit Progress(std::function<std::int64_t()> total) : total_(std::move(total)) {}

  // The next piece of this name begins.
  void Next(const std::string& name) {
    ++current_;
    Show(current_ - 1, current_, ": " + name);
  }
  // This many pages are finished.
  void Finished(std::size_t pages);

 private:
  using Clock = std::chrono::steady_clock;

  void Show(std::int64_t finished, std::int64_t shown, const std::string& what);

  std::function<std::int64_t()> total_;
  std::int64_t current_ = 0;
  Clock::time_point begun_ = Clock::now();
  Clock::time_point next_ = begun_ + std::chrono::seconds(1);
};

}  // namespace kvo
