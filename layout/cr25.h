#pragma once

#include <array>

#include "host/record_kind.h"
#include "layout/field.h"

namespace tremvik {

struct Cr25 {  // state registration that an occurrence concerns
  static constexpr Kind kKind = Kind::kCr25;
  static constexpr Field<Cr25> kCr{"CR", 1, 2}, kIE{"IE", 3, 12}, kValor{"Valor", 15, 15},
      kSeparadores{"Separadores", 30, 2};
  static constexpr std::array kFields{kCr, kIE, kValor, kSeparadores};
};
static_assert(Covers(Cr25::kFields, 31));

}  // namespace tremvik
