// The draw behind a sample file: the same seed gives the same numbers with every compiler and library, which
// the standard distributions do not promise. Draw once per statement or initializer: the order in which
// operands and arguments are evaluated is the compiler's.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace tremvik::sample {

class Draw {
 public:
  explicit Draw(std::uint64_t seed) : state_(seed) {}

  /// The next 64 bits (SplitMix64).
  std::uint64_t Bits() {
    std::uint64_t z = (state_ += 0x9E3779B97F4A7C15U);
    z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9U;
    z = (z ^ (z >> 27U)) * 0x94D049BB133111EBU;
    return z ^ (z >> 31U);
  }
  /// A number from `least` to `most`, both included.
  template <typename T>
  T Between(T least, T most) {
    const auto range = static_cast<std::uint64_t>(most - least) + 1;
    return static_cast<T>(least + static_cast<T>(Bits() % range));
  }
  /// True in `percent` of a hundred draws.
  bool Chance(int percent) { return Between(0, 99) < percent; }
  /// `quantity` decimal digits.
  std::string Digits(std::size_t quantity) {
    std::string digits;
    for (std::size_t i = 0; i < quantity; ++i)
      digits += static_cast<char>('0' + Between(0, 9));
    return digits;
  }
  template <typename T, std::size_t N>
  const T& OneOf(const std::array<T, N>& options) {
    return options[Between<std::size_t>(0, N - 1)];
  }
  template <typename T>
  void Shuffle(std::vector<T>& items) {
    for (std::size_t i = items.size(); i > 1; --i)
      std::swap(items[i - 1], items[Between<std::size_t>(0, i - 1)]);
  }

 private:
  std::uint64_t state_;
};

}  // namespace tremvik::sample
