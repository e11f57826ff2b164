// Texts of digits, eight at a time: amounts have 15 and are read several times a record.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "runtime/text.h"

namespace tremvik {

/// A text of 4 to 16 characters that are digits or not: its last eight, or all of a shorter one, and the
/// first eight, which may be some of the same. Packed characters have the first one in the lowest byte.
class DigitText {
 public:
  static constexpr std::size_t kFewest = 4;
  static constexpr std::size_t kMost = 16;
  [[nodiscard]] static constexpr bool Fits(std::string_view text) {
    return text.size() >= kFewest && text.size() <= kMost;
  }

  explicit DigitText(std::string_view text) {
    if (text.size() < kEight) {
      const std::size_t missing = kBits * (kEight - text.size());
      const std::uint64_t front = Packed<std::uint32_t>(text.data());
      const std::uint64_t back = Packed<std::uint32_t>(text.data() + text.size() - kFewest);
      last_ = back << (kBits * kFewest) | front << missing;
      return;
    }
    behind_ = text.size() - kEight;
    first_ = Packed<std::uint64_t>(text.data());
    last_ = Packed<std::uint64_t>(text.data() + behind_);
  }

  /// True when all characters are digits.
  [[nodiscard]] bool valid() const { return AreDigits(first_) && AreDigits(last_); }
  /// The number that the digits make.
  [[nodiscard]] std::uint64_t Value() const {
    constexpr std::array<std::uint64_t, kEight + 1> kPowers{1,      10,      100,      1000,     10000,
                                                            100000, 1000000, 10000000, 100000000};
    if (behind_ == 0) return ValueOf(last_);
    const std::size_t again = kBits * (kEight - behind_);  // of the last eight, the bits that the first hold
    return ValueOf(first_) * kPowers[behind_] + ValueOf(last_ >> again << again);
  }

 private:
  static constexpr std::size_t kEight = 8;
  static constexpr std::size_t kBits = 8;

  template <typename Word>
  static Word Packed(const char* text) {
    std::array<char, sizeof(Word)> bytes{};
    std::copy_n(text, bytes.size(), bytes.begin());
    if constexpr (std::endian::native == std::endian::big) std::ranges::reverse(bytes);
    return std::bit_cast<Word>(bytes) ^ static_cast<Word>(0x3030303030303030);  // "0" becomes 0
  }
  // A byte that is 0 to 9 stays in its low half with 6 more; any other leaves it, before or then.
  static constexpr bool AreDigits(std::uint64_t packed) {
    return ((packed | (packed + 0x0606060606060606)) & 0xF0F0F0F0F0F0F0F0) == 0;
  }
  // Pairs, then fours, then all eight, each step in one multiplication.
  static constexpr std::uint64_t ValueOf(std::uint64_t digits) {
    digits = (digits * 10 + (digits >> 8U)) & 0x00FF00FF00FF00FF;
    digits = (digits * 100 + (digits >> 16U)) & 0x0000FFFF0000FFFF;
    return (digits * 10000 + (digits >> 32U)) & 0x00000000FFFFFFFF;
  }

  std::uint64_t first_ = 0;
  std::uint64_t last_ = 0;
  std::size_t behind_ = 0;  // characters behind the first eight
};

}  // namespace tremvik
