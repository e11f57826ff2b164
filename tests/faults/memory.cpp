#include "tests/faults/memory.h"

#include <cstdlib>
#include <limits>
#include <new>

namespace {

struct Counter {
  long left = std::numeric_limits<long>::max();
  bool and_all_after = false;
  bool struck = false;
};
thread_local Counter g_counter;

void* Allocate(std::size_t size) {
  Counter& counter = g_counter;
  if (counter.left != std::numeric_limits<long>::max() && --counter.left <= 0 &&
      (counter.left == 0 || counter.and_all_after)) {
    counter.struck = true;
    throw std::bad_alloc();
  }
  void* const memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

void* operator new(std::size_t size) { return Allocate(size); }
void* operator new[](std::size_t size) { return Allocate(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

namespace tremvik::test {

void FailAllocation(long n, bool and_all_after) {
  g_counter = {.left = n, .and_all_after = and_all_after, .struck = false};
}

bool AllowAllocations() {
  const bool struck = g_counter.struck;
  g_counter = {};
  return struck;
}

}  // namespace tremvik::test
