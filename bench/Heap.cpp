#include "bench/Heap.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

bool g_counting = false;
std::size_t g_allocations = 0;
std::size_t g_inUse = 0;
std::size_t g_start = 0;
std::size_t g_peak = 0;

}  // namespace

[[gnu::noinline]] void* operator new(std::size_t size) {
  void* const memory = std::malloc(size);
  if (memory == nullptr) throw std::bad_alloc();
  if (g_counting) {
    ++g_allocations;
    g_inUse += malloc_usable_size(memory);
    if (g_inUse > g_start) g_peak = std::max(g_peak, g_inUse - g_start);
  }
  return memory;
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
  if (g_counting && memory != nullptr) g_inUse -= malloc_usable_size(memory);
  std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
  operator delete(memory);
}

namespace kvo::bench {

HeapCount::HeapCount() {
  // Starts far above zero, because memory allocated earlier may be freed.
  g_inUse = g_start = ~std::size_t{0} / 2;
  g_peak = g_allocations = 0;
  g_counting = true;
}
HeapCount::~HeapCount() { g_counting = false; }

std::size_t HeapCount::Allocations() const { return g_allocations; }
std::size_t HeapCount::PeakBytes() const { return g_peak; }

void ProcessHeap::Look() { peak_ = std::max(peak_, Held() - before_); }

long ProcessHeap::Held() {
  const auto info = mallinfo2();
  return static_cast<long>(info.uordblks + info.hblkhd);
}

}  // namespace kvo::bench
