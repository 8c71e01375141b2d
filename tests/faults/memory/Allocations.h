// Counts every allocation of this program, and makes one of them fail on demand.
#pragma once

namespace kvo::test {

// Returns the number of allocations that have not been freed.
long LiveAllocations();

// During its lifetime, the allocation with this number, counted from 1, fails; later ones succeed.
class FailingAllocation {
 public:
  explicit FailingAllocation(long number);
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;
  ~FailingAllocation();

  static bool Happened();  // for the most recent object
};

}  // namespace kvo::test
