#include "apps/kvo/InTurns.h"

#include <signal.h>  // NOLINT(modernize-deprecated-headers): the POSIX part is wanted

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

#include "apps/kvo/Ending.h"

namespace kvo {
namespace {

constexpr auto kTick = std::chrono::milliseconds(50);
// Fewer pieces than that wait, but not for long: many are written and flushed together.
constexpr std::size_t kEnoughToTake = 128;
constexpr auto kPatience = std::chrono::milliseconds(500);

class Run {
 public:
  Run(std::size_t count, const Turns& turns) : turns_(turns), finished_(count) {}
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;
  ~Run() {
    Stop();
    for (std::thread& worker : workers_) worker.join();
  }

  std::size_t Take() {
    StartWorkers();
    std::unique_lock lock(mutex_);
    while (taken_ < finished_.size()) {
      if (workers_.empty()) WorkOne(lock);
      if (StopSignal() != 0) stops_ = true;
      ready_.wait_for(lock, workers_.empty() ? kTick * 0 : kTick, [&] { return IsEnoughReady(); });
      const auto now = std::chrono::steady_clock::now();
      const bool due = IsEnoughReady() || stops_ || now - takenAt_ >= kPatience;
      const std::size_t end = due ? ReadyEnd() : taken_;
      if (due) takenAt_ = now;
      const std::size_t count = finishedCount_;
      lock.unlock();
      if (end != taken_) turns_.take(taken_, end);
      turns_.tick(count);
      lock.lock();
      taken_ = end;
      room_.notify_all();
      if (stops_ && working_ == 0 && ReadyEnd() == taken_) break;
    }
    return taken_;
  }

 private:
  // Signals go to the calling thread, which removes what the others are writing.
  void StartWorkers() {
    // Twice as many as cores: some wait for the drive while others work.
    const std::size_t wanted = std::min<std::size_t>(
        2 * std::max(1U, std::thread::hardware_concurrency()), finished_.size());
    sigset_t all;
    sigset_t former;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &former);
    try {
      while (workers_.size() < wanted) workers_.emplace_back([this] { Work(); });
    } catch (const std::system_error&) {
      // Goes on with those there are; without any, on the calling thread.
    }
    pthread_sigmask(SIG_SETMASK, &former, nullptr);
  }

  void Work() {
    std::unique_lock lock(mutex_);
    for (;;) {
      room_.wait(lock, [&] {
        return stops_ || next_ == finished_.size() || next_ < taken_ + turns_.window;
      });
      if (stops_ || next_ == finished_.size()) return;
      WorkOne(lock);
    }
  }

  void WorkOne(std::unique_lock<std::mutex>& lock) {
    const std::size_t index = next_++;
    ++working_;
    lock.unlock();
    turns_.work(index);
    lock.lock();
    --working_;
    ++finishedCount_;
    finished_[index] = true;
    if (IsEnoughReady() || (stops_ && working_ == 0)) ready_.notify_one();
  }

  bool IsEnoughReady() {
    const std::size_t enough = std::min(kEnoughToTake, (turns_.window + 1) / 2);
    return ReadyEnd() >= std::min(taken_ + enough, finished_.size());
  }

  // Returns the end of the finished pieces without a gap.
  std::size_t ReadyEnd() {
    while (readyEnd_ < finished_.size() && finished_[readyEnd_]) ++readyEnd_;
    return readyEnd_;
  }

  void Stop() {
    const std::lock_guard lock(mutex_);
    stops_ = true;
    room_.notify_all();
  }

  const Turns& turns_;
  std::mutex mutex_;  // guards everything below but the workers
  std::condition_variable room_;
  std::condition_variable ready_;
  std::vector<bool> finished_;
  std::size_t next_ = 0;
  std::size_t readyEnd_ = 0;
  std::size_t taken_ = 0;
  std::chrono::steady_clock::time_point takenAt_ = std::chrono::steady_clock::now();
  std::size_t working_ = 0;
  std::size_t finishedCount_ = 0;
  bool stops_ = false;
  std::vector<std::thread> workers_;
};

}  // namespace

std::size_t RunInTurns(std::size_t count, const Turns& turns) {
  if (count == 1) {
    turns.work(0);
    turns.take(0, 1);
    return 1;
  }
  const StopLater stopLater;
  return Run(count, turns).Take();
}

}  // namespace kvo
