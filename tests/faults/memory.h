// The program's operator new, which can be made to fail.
#pragma once

namespace tremvik::test {

/// From now on the n-th allocation of this thread throws std::bad_alloc and, with `and_all_after`, so do all
/// after it.
void FailAllocation(long n, bool and_all_after);
/// Allocations succeed again. True when one was made to fail.
bool AllowAllocations();

}  // namespace tremvik::test
