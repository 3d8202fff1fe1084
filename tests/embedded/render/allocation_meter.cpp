#include "embedded/render/allocation_meter.h"

#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> held{0};
std::atomic<std::size_t> peak{0};

}  // namespace

// The array and nothrow forms call these.
void* operator new(std::size_t size) {
  void* block = std::malloc(size == 0 ? 1 : size);
  if (block == nullptr) throw std::bad_alloc();
  const std::size_t now = held += malloc_usable_size(block);
  std::size_t highest = peak.load();
  while (now > highest && !peak.compare_exchange_weak(highest, now)) {
  }
  return block;
}

void operator delete(void* block) noexcept {
  if (block == nullptr) return;
  held -= malloc_usable_size(block);
  std::free(block);
}

void operator delete(void* block, std::size_t) noexcept { operator delete(block); }

namespace sheafwork::embedded::testing {

AllocationMeter::AllocationMeter() : start_(held.load()) { peak = start_; }

std::size_t AllocationMeter::PeakBytes() const { return peak.load() - start_; }

}  // namespace sheafwork::embedded::testing
