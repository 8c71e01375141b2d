// What the program allocates: how often, and how many bytes at most. The counting operator new is
// the whole program's, so it is linked into nothing but the benchmarks.
#pragma once

#include <cstddef>

namespace kvo::bench {

// Counts between its construction and its end; one at a time.
class HeapCount {
 public:
  HeapCount();
  ~HeapCount();
  HeapCount(const HeapCount&) = delete;
  HeapCount& operator=(const HeapCount&) = delete;

  std::size_t Allocations() const;
  // Beyond what was held at the beginning, in the bytes that the heap really hands out.
  std::size_t PeakBytes() const;
};

// The whole process' heap, libraries that do not use operator new included. The peak is of the
// moments at which somebody looked.
class ProcessHeap {
 public:
  ProcessHeap() : before_(Held()) {}
  void Look();
  double PeakKilobytes() const { return static_cast<double>(peak_) / 1024; }

 private:
  static long Held();

  long before_;
  long peak_ = 0;
};

}  // namespace kvo::bench
