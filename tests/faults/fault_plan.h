// Which of many calls is to fail.
#pragma once

namespace tremvik::test {

/// Which of the calls counted fail.
enum class Reach {
  kOnce,      ///< the n-th one
  kFromThere  ///< the n-th one and all after it
};

class FaultPlan {
 public:
  FaultPlan(long n, Reach reach) : n_(n), reach_(reach) {}
  /// Counts one call. True when it is to fail.
  bool Strikes() {
    ++count_;
    return count_ == n_ || (count_ > n_ && reach_ == Reach::kFromThere);
  }
  /// True when a call has failed.
  [[nodiscard]] bool struck() const { return count_ >= n_; }

 private:
  long n_;
  Reach reach_;
  long count_ = 0;
};

}  // namespace tremvik::test
