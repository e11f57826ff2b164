// CFOP families that several rules share, by the form of the code: three characters up to 200212, four after.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

#include "checks/period.h"

namespace tremvik {

/// `first` and, behind it, `second`.
template <std::size_t M, std::size_t N>
[[nodiscard]] constexpr std::array<Range, M + N> Joined(const std::array<Range, M>& first,
                                                        const std::array<Range, N>& second) {
  std::array<Range, M + N> both{};
  std::ranges::copy(first, both.begin());
  std::ranges::copy(second, both.begin() + M);
  return both;
}

inline constexpr std::array kTransporteAte2002{Range{561, 563}, Range{661, 663}, Range{761, 761}};
inline constexpr std::array kComunicacaoAte2002{Range{551, 553}};
inline constexpr std::array kEnergiaAte2002{Range{541, 546}, Range{641, 646}};

inline constexpr std::array kTransporte{Range{5351, 5399}, Range{6351, 6399}, Range{7351, 7399}};
inline constexpr std::array kComunicacao{Range{5301, 5349}, Range{6301, 6349}, Range{7301, 7349}};
inline constexpr std::array kEnergia{Range{5251, 5299}, Range{6251, 6299}, Range{7251, 7299}};

}  // namespace tremvik
