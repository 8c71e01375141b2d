// Two pieces of work timed in turns, so that what else happens on the machine hits both alike.
#pragma once

#include <algorithm>
#include <ctime>
#include <vector>

namespace kvo::bench {

inline double Median(std::vector<double> values) {
  std::ranges::sort(values);
  return values[values.size() / 2];
}

// Processor time, so that other programs on the machine count less.
template <class Work>
double Seconds(Work&& work, std::size_t repeats) {
  const auto now = [] {
    timespec time;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
  };
  const double begin = now();
  for (std::size_t i = 0; i < repeats; ++i) work();
  return now() - begin;
}

// How many times as long `work` takes as `reference`: the median of so many rounds, in each of
// which both are done `repeats` times.
template <class Work, class Reference>
double Ratio(Work&& work, Reference&& reference, std::size_t repeats, int rounds) {
  std::vector<double> ratios;
  for (int round = 0; round < rounds; ++round) {
    const double small = Seconds(reference, repeats);
    ratios.push_back(Seconds(work, repeats) / small);
  }
  return Median(ratios);
}

}  // namespace kvo::bench
