// Reference periods AAAAMM and sets that hold from one period to another.
#pragma once

#include <span>

namespace tremvik {

/// The last period of a set that has no end.
inline constexpr int kSemFim = 999912;

/// Whole numbers from `first` to `last`, both included: reference periods AAAAMM, CFOPs, sub-items.
struct Range {
  int first;
  int last;

  [[nodiscard]] constexpr bool Holds(int number) const { return number >= first && number <= last; }
};

/// True when `number` lies in one of `ranges`.
[[nodiscard]] constexpr bool In(std::span<const Range> ranges, int number) {
  for (const Range& range : ranges) {
    if (range.Holds(number)) return true;
  }
  return false;
}

/// True when `number` is one of `numbers`.
[[nodiscard]] constexpr bool In(std::span<const int> numbers, int number) {
  for (const int candidate : numbers) {
    if (candidate == number) return true;
  }
  return false;
}

}  // namespace tremvik
