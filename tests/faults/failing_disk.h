// The disk below SQLite's databases, which can be made to fail.
#pragma once

#include "tests/faults/fault_plan.h"

namespace tremvik::test {

/// From now on the operations on database files are the plan's and fail when it strikes; without a plan they
/// succeed again. The first call puts a file system in front of SQLite's default one.
void PlanDisk(FaultPlan* plan);

}  // namespace tremvik::test
