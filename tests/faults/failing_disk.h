// The disk below SQLite's databases, which can be made to fail.
#pragma once

namespace tremvik::test {

/// Stands in front of the default file system of SQLite from the first use on.
class FailingDisk {
 public:
  /// From now on the n-th operation on a database file fails and, with `and_all_after`, so do all after it.
  static void Fail(long n, bool and_all_after);
  /// Operations succeed again. True when one was made to fail.
  static bool Heal();
};

}  // namespace tremvik::test
