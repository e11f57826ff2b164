#pragma once

#include <array>

#include "host/record_kind.h"
#include "layout/field.h"

namespace tremvik {

struct Cr26 {  // substitute taxpayer of an occurrence
  static constexpr Kind kKind = Kind::kCr26;
  static constexpr Field<Cr26> kCr{"CR", 1, 2}, kIESubstituto{"IESubstituto", 3, 12}, kNF{"NF", 15, 9},
      kDataInicio{"DataInicio", 24, 6}, kDataFim{"DataFim", 30, 6}, kValor{"Valor", 36, 15},
      kSeparadores{"Separadores", 51, 2};
  static constexpr std::array kFields{kCr, kIESubstituto, kNF, kDataInicio, kDataFim, kValor, kSeparadores};
};
static_assert(Covers(Cr26::kFields, 52));

}  // namespace tremvik
