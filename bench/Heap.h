// Counts heap allocations and their peak size. Replaces operator new for the whole program, so only
// the benchmarks link it.
#pragma once

#include <cstddef>

namespace kvo::bench {

// Counts from construction to destruction; only one may exist at a time.
class HeapCount {
 public:
  HeapCount();
  ~HeapCount();
  HeapCount(const HeapCount&) = delete;
  HeapCount& operator=(const HeapCount&) = delete;

  std::size_t Allocations() const;
  // Above the amount in use at construction, in the bytes that the heap really hands out.
  std::size_t PeakBytes() const;
};

// Measures the whole process's heap, including libraries that do not use operator new. The peak
// covers only the moments when Look() was called.
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
