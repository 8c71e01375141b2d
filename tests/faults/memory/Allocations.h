// Every allocation of this program, counted, and one of them failing on demand.
#pragma once

namespace kvo::test {

// How many allocations are not freed yet.
long LiveAllocations();

// While it lives, the allocation with this number, from 1, fails; later ones do not.
class FailingAllocation {
 public:
  explicit FailingAllocation(long number);
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;
  ~FailingAllocation();

  static bool Happened();  // of the latest one
};

}  // namespace kvo::test
