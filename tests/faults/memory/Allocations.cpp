#include "tests/faults/memory/Allocations.h"

#include <cstdlib>
#include <new>

namespace kvo::test {
namespace {

long g_live = 0;
long g_untilFailure = 0;  // 0: none will fail

void* Allocated(std::size_t size) noexcept {
  if (g_untilFailure > 0 && --g_untilFailure == 0) return nullptr;
  void* const memory = std::malloc(size == 0 ? 1 : size);
  if (memory != nullptr) ++g_live;
  return memory;
}

void* AllocatedOrThrown(std::size_t size) {
  void* const memory = Allocated(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void Freed(void* memory) noexcept {
  if (memory != nullptr) --g_live;
  std::free(memory);
}

}  // namespace

long LiveAllocations() { return g_live; }

FailingAllocation::FailingAllocation(long number) { g_untilFailure = number; }
FailingAllocation::~FailingAllocation() {
  // Leaves 0 once the failure has happened.
  g_untilFailure = -g_untilFailure;
}
bool FailingAllocation::Happened() { return g_untilFailure == 0; }

}  // namespace kvo::test

void* operator new(std::size_t size) { return kvo::test::AllocatedOrThrown(size); }
void* operator new[](std::size_t size) { return kvo::test::AllocatedOrThrown(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return kvo::test::Allocated(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return kvo::test::Allocated(size);
}
void operator delete(void* memory) noexcept { kvo::test::Freed(memory); }
void operator delete[](void* memory) noexcept { kvo::test::Freed(memory); }
void operator delete(void* memory, std::size_t) noexcept { kvo::test::Freed(memory); }
void operator delete[](void* memory, std::size_t) noexcept { kvo::test::Freed(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { kvo::test::Freed(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { kvo::test::Freed(memory); }
