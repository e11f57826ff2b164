#pragma once

#include <array>

#include "host/record_kind.h"
#include "layout/field.h"

namespace tremvik {

struct Cr07 {  // one payment of a declaration
  static constexpr Kind kKind = Kind::kCr07;
  static constexpr Field<Cr07> kCr{"CR", 1, 2}, kPropriaOuST{"PrópriaOuST", 3, 1}, kValor{"Valor", 4, 15},
      kData{"Data", 19, 8}, kSeparadores{"Separadores", 27, 2};
  static constexpr std::array kFields{kCr, kPropriaOuST, kValor, kData, kSeparadores};
};
static_assert(Covers(Cr07::kFields, 28));

}  // namespace tremvik
