#include "allocations.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> total{0};
std::atomic<std::size_t> count{0};

void* allocate(std::size_t size, std::size_t alignment) {
  total.fetch_add(size, std::memory_order_relaxed);
  count.fetch_add(1, std::memory_order_relaxed);
  const std::size_t whole = (size + alignment - 1) / alignment * alignment;
  void* memory = std::aligned_alloc(alignment, whole > 0 ? whole : alignment);
  if (!memory) throw std::bad_alloc();
  return memory;
}

}  // namespace

namespace bench {

std::size_t allocatedBytes() {
  return total.load(std::memory_order_relaxed);
}

std::size_t allocationCount() {
  return count.load(std::memory_order_relaxed);
}

}  // namespace bench

void* operator new(std::size_t size) {
  return allocate(size, alignof(std::max_align_t));
}
void* operator new(std::size_t size, std::align_val_t alignment) {
  return allocate(size, static_cast<std::size_t>(alignment));
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::align_val_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
  std::free(memory);
}
