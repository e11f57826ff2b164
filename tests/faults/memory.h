// The program's operator new, which can be made to fail.
#pragma once

#include "tests/faults/fault_plan.h"

namespace tremvik::test {

/// From now on the allocations of this thread are the plan's and throw std::bad_alloc when it strikes;
/// without a plan they succeed again.
void PlanAllocations(FaultPlan* plan);

}  // namespace tremvik::test
