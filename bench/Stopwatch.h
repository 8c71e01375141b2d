// Times pieces of work against each other. Runs them in random order over several rounds (Google
// Benchmark's random interleaving), so that other load on the machine affects all of them alike.
// Each figure is the median of the rounds.
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <utility>

namespace kvo::bench {

enum class Clock { processor, wall };

// Seconds per call, by the name passed to Add().
using Times = std::map<std::string, double>;

class Stopwatch {
 public:
  // Processor time leaves out other programs; wall-clock time includes the processes that the work
  // waits for.
  explicit Stopwatch(Clock clock = Clock::processor) : clock_(clock) {}

  template <class Work>
  void Add(const std::string& name, Work work) {
    Register(name, [work = std::move(work)](benchmark::State& state) mutable {
      for (auto _ : state) work();
    });
  }
  // `prepare` runs before each call and is not timed.
  template <class Prepare, class Work>
  void Add(const std::string& name, Prepare prepare, Work work) {
    Register(name, [prepare = std::move(prepare),
                    work = std::move(work)](benchmark::State& state) mutable {
      for (auto _ : state) {
        state.PauseTiming();
        prepare();
        state.ResumeTiming();
        work();
      }
    });
  }

  // Runs and removes everything that was added.
  Times Run();

 private:
  template <class Loop>
  void Register(const std::string& name, Loop loop) {
    auto* const added = benchmark::RegisterBenchmark(name.c_str(), std::move(loop));
    if (clock_ == Clock::wall) added->UseRealTime();
  }

  Clock clock_;
};

double Median(std::vector<double> values);

}  // namespace kvo::bench
