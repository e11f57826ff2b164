// The record kinds of the file: one name for each, wherever one is meant.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tremvik {

/// The record kinds, named by their codes and in the order of the codes.
enum class Kind : std::uint8_t {
  kCr01,
  kCr05,
  kCr07,
  kCr10,
  kCr14,
  kCr18,
  kCr20,
  kCr25,
  kCr26,
  kCr27,
  kCr28,
  kCr30,
  kCr31
};
inline constexpr std::size_t kKindCount = 13;

/// The kinds whose records are stored, one writer each: all but the master record, which tells of the file
/// and not of a declaration.
inline constexpr std::array kStoredKinds{Kind::kCr05, Kind::kCr07, Kind::kCr10, Kind::kCr14,
                                         Kind::kCr18, Kind::kCr20, Kind::kCr25, Kind::kCr26,
                                         Kind::kCr27, Kind::kCr28, Kind::kCr30, Kind::kCr31};
static_assert(kStoredKinds.size() == kKindCount - 1);

/// One value for each kind.
template <typename T>
class ByKind {
 public:
  constexpr T& operator[](Kind kind) { return values_[static_cast<std::size_t>(kind)]; }
  constexpr const T& operator[](Kind kind) const { return values_[static_cast<std::size_t>(kind)]; }
  constexpr auto begin() { return values_.begin(); }
  constexpr auto end() { return values_.end(); }

 private:
  std::array<T, kKindCount> values_{};
};

/// The two-digit record code of a kind ("05").
[[nodiscard]] constexpr std::string_view Codigo(Kind kind) {
  constexpr std::array<std::string_view, kKindCount> kCodigos{"01", "05", "07", "10", "14", "18", "20",
                                                              "25", "26", "27", "28", "30", "31"};
  return kCodigos[static_cast<std::size_t>(kind)];
}

}  // namespace tremvik
