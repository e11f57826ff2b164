// The thirteen record kinds of the file, in the order of their codes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "layout/cr01.h"
#include "layout/cr05.h"
#include "layout/cr07.h"
#include "layout/cr10.h"
#include "layout/cr14.h"
#include "layout/cr18.h"
#include "layout/cr20.h"
#include "layout/cr25.h"
#include "layout/cr26.h"
#include "layout/cr27.h"
#include "layout/cr28.h"
#include "layout/cr30.h"
#include "layout/cr31.h"
#include "layout/record.h"

namespace tremvik {

/// Place of a kind in `kKinds`.
enum class Kind : std::uint8_t { k01, k05, k07, k10, k14, k18, k20, k25, k26, k27, k28, k30, k31 };

/// One record kind: its code, the exact length of its content in characters (without the separators) and its
/// fields, the separators included.
struct KindInfo {
  std::string_view code;
  int number;
  int length;
  std::span<const FieldInfo> fields;
};

template <typename R>
inline constexpr auto kFieldInfos = FieldInfos<R>();

template <typename R>
inline constexpr KindInfo kKindInfo{R::kCode, (R::kCode[0] - '0') * 10 + (R::kCode[1] - '0'),
                                    static_cast<int>(Record<R>::kBlock - kCrLf.size()), kFieldInfos<R>};

inline constexpr std::array kKinds{
    kKindInfo<Cr01>, kKindInfo<Cr05>, kKindInfo<Cr07>, kKindInfo<Cr10>, kKindInfo<Cr14>,
    kKindInfo<Cr18>, kKindInfo<Cr20>, kKindInfo<Cr25>, kKindInfo<Cr26>, kKindInfo<Cr27>,
    kKindInfo<Cr28>, kKindInfo<Cr30>, kKindInfo<Cr31>,
};

/// The place in `kKinds` of the kind with that number, or the number of kinds where there is none.
constexpr std::size_t KindOfNumber(int number) {
  constexpr auto kPlaces = [] {
    std::array<std::uint8_t, 100> places{};
    places.fill(static_cast<std::uint8_t>(kKinds.size()));
    for (std::size_t i = 0; i < kKinds.size(); ++i)
      places[static_cast<std::size_t>(kKinds[i].number)] = static_cast<std::uint8_t>(i);
    return places;
  }();
  return number >= 0 && number < 100 ? kPlaces[static_cast<std::size_t>(number)] : kKinds.size();
}

/// The kind with that two-character code, or null.
constexpr const KindInfo* FindKind(std::string_view code) {
  if (code.size() != 2 || code[0] < '0' || code[0] > '9' || code[1] < '0' || code[1] > '9') return nullptr;
  const std::size_t place = KindOfNumber((code[0] - '0') * 10 + (code[1] - '0'));
  return place < kKinds.size() ? &kKinds[place] : nullptr;
}

}  // namespace tremvik
