#pragma once

#include <array>

#include "host/record_kind.h"
#include "layout/field.h"

namespace tremvik {

struct Cr14 {  // interstate detail of a CFOP; of its content only the place and the quantity Q18 are settled
  static constexpr Kind kKind = Kind::kCr14;
  static constexpr Field<Cr14> kCr{"CR", 1, 2}, kConteudo{"Conteúdo", 3, 138}, kQ18{"Q18", 141, 4},
      kSeparadores{"Separadores", 145, 2};
  static constexpr std::array kFields{kCr, kConteudo, kQ18, kSeparadores};
};
static_assert(Covers(Cr14::kFields, 146));

}  // namespace tremvik
