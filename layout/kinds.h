// The table of the record kinds: their layouts, and the tree that they form in the file.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "host/record_kind.h"
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

/// One record kind.
struct KindInfo {
  Kind kind;
  std::string_view code;
  int number;
  int length;                         ///< of its content in characters, without the separators
  std::span<const FieldInfo> fields;  ///< the separators included
  std::optional<Kind> parent;         ///< none for the master record
  FieldInfo quantity;                 ///< the parent's field that announces how many follow
};

template <typename R>
inline constexpr auto kFieldInfos = FieldInfos<R>();

/// The kind of record `R`, without its place in the tree.
template <typename R>
consteval KindInfo Alone() {
  constexpr std::string_view kCode = Codigo(R::kKind);
  return {R::kKind,
          kCode,
          (kCode[0] - '0') * 10 + (kCode[1] - '0'),
          static_cast<int>(Record<R>::kBlock - kCrLf.size()),
          kFieldInfos<R>,
          {},
          {}};
}

/// The kind of record `R`, of which `quantity` announces how many follow a record `Parent`.
template <typename R, typename Parent>
consteval KindInfo Announced(const Field<Parent>& quantity) {
  KindInfo info = Alone<R>();
  info.parent = Parent::kKind;
  info.quantity = {quantity.name, quantity.position, quantity.width};
  return info;
}

/// All kinds, in the order of `Kind`. The children of a record follow it kind by kind in that order, each
/// with its own children.
inline constexpr std::array kKinds{
    Alone<Cr01>(),
    Announced<Cr05>(Cr01::kQ05),
    Announced<Cr07>(Cr05::kQ07),
    Announced<Cr10>(Cr05::kQ10),
    Announced<Cr14>(Cr10::kQ14),
    Announced<Cr18>(Cr14::kQ18),
    Announced<Cr20>(Cr05::kQ20),
    Announced<Cr25>(Cr20::kQ25),
    Announced<Cr26>(Cr20::kQ26),
    Announced<Cr27>(Cr20::kQ27),
    Announced<Cr28>(Cr20::kQ28),
    Announced<Cr30>(Cr05::kQ30),
    Announced<Cr31>(Cr05::kQ31),
};

/// The kind's row in `kKinds`.
constexpr const KindInfo& InfoOf(Kind kind) { return kKinds[static_cast<std::size_t>(kind)]; }

static_assert(kKinds.size() == kKindCount);
static_assert(std::ranges::all_of(kKinds, [](const KindInfo& info) {
  const bool announced_by_name =
      info.quantity.name.starts_with('Q') && info.quantity.name.substr(1) == info.code;
  return &info == &InfoOf(info.kind) && announced_by_name == info.parent.has_value();
}));

/// The kinds whose parent is `kind`, in the order in which they stand in the file.
inline std::span<const Kind> ChildrenOf(Kind kind) {
  struct Children {
    std::array<Kind, 5> kinds{};
    std::size_t count = 0;
  };
  static constexpr auto kChildren = [] {
    ByKind<Children> all;
    for (const KindInfo& info : kKinds) {
      if (info.parent) all[*info.parent].kinds[all[*info.parent].count++] = info.kind;
    }
    return all;
  }();
  return std::span(kChildren[kind].kinds).first(kChildren[kind].count);
}

/// Places in `kKinds` by the kinds' numbers; the number of kinds where there is none.
inline constexpr auto kPlacesByNumber = [] {
  std::array<std::uint8_t, 100> places{};
  places.fill(static_cast<std::uint8_t>(kKinds.size()));
  for (const KindInfo& info : kKinds)
    places[static_cast<std::size_t>(info.number)] = static_cast<std::uint8_t>(info.kind);
  return places;
}();

/// The kind with that number, or null.
constexpr const KindInfo* KindOfNumber(int number) {
  if (number < 0 || number >= 100) return nullptr;
  const std::size_t place = kPlacesByNumber[static_cast<std::size_t>(number)];
  return place < kKinds.size() ? &kKinds[place] : nullptr;
}

/// The kind with that two-character code, or null.
constexpr const KindInfo* FindKind(std::string_view code) {
  if (code.size() != 2 || code[0] < '0' || code[0] > '9' || code[1] < '0' || code[1] > '9') return nullptr;
  return KindOfNumber((code[0] - '0') * 10 + (code[1] - '0'));
}

}  // namespace tremvik
