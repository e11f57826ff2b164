#include "tests/faults/memory.h"

#include <cstdlib>
#include <new>

namespace {

thread_local tremvik::test::FaultPlan* g_plan = nullptr;

void* Allocate(std::size_t size) {
  if (g_plan != nullptr && g_plan->Strikes()) throw std::bad_alloc();
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

void PlanAllocations(FaultPlan* plan) { g_plan = plan; }

}  // namespace tremvik::test
