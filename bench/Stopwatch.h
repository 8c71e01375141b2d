// Times pieces of work against each other. What is added runs in turns, in random order and several
// rounds (Google Benchmark's random interleaving), so that what else happens on the machine hits
// all of it alike; every figure is the median of the rounds.
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <utility>

namespace kvo::bench {

enum class Clock { processor, wall };

// Seconds for one call of each piece of work, by the name it was added under.
using Times = std::map<std::string, double>;

class Stopwatch {
 public:
  // Processor time leaves out what other programs do; the wall clock counts the processes that the
  // work waits for.
  explicit Stopwatch(Clock clock = Clock::processor) : clock_(clock) {}

  template <class Work>
  void Add(const std::string& name, Work work) {
    auto* const added = benchmark::RegisterBenchmark(
        name.c_str(), [work = std::move(work)](benchmark::State& state) mutable {
          for (auto _ : state) work();
        });
    if (clock_ == Clock::wall) added->UseRealTime();
  }

  // Runs everything that was added and forgets it.
  Times Run();

 private:
  Clock clock_;
};

double Median(std::vector<double> values);

}  // namespace kvo::bench
