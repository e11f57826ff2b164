#pragma once

#include <array>

#include "host/record_kind.h"
#include "layout/field.h"

namespace tremvik {

struct Cr27 {  // substituted taxpayer of an occurrence
  static constexpr Kind kKind = Kind::kCr27;
  static constexpr Field<Cr27> kCr{"CR", 1, 2}, kIESubstituido{"IESubstituído", 3, 12}, kNF{"NF", 15, 9},
      kValor{"Valor", 24, 15}, kSeparadores{"Separadores", 39, 2};
  static constexpr std::array kFields{kCr, kIESubstituido, kNF, kValor, kSeparadores};
};
static_assert(Covers(Cr27::kFields, 40));

}  // namespace tremvik
