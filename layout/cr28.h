#pragma once

#include <array>

#include "host/record_kind.h"
#include "layout/field.h"

namespace tremvik {

struct Cr28 {  // authorization of accumulated credit of an occurrence
  static constexpr Kind kKind = Kind::kCr28;
  static constexpr Field<Cr28> kCr{"CR", 1, 2}, kCodAutorizacao{"CodAutorizacao", 3, 12},
      kValor{"Valor", 15, 15}, kSeparadores{"Separadores", 30, 2};
  static constexpr std::array kFields{kCr, kCodAutorizacao, kValor, kSeparadores};
};
static_assert(Covers(Cr28::kFields, 31));

}  // namespace tremvik
