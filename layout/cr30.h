#pragma once

#include <array>

#include "host/record_kind.h"
#include "layout/field.h"

namespace tremvik {

struct Cr30 {  // DIPAM value of a declaration; of its content only the place is settled
  static constexpr Kind kKind = Kind::kCr30;
  static constexpr Field<Cr30> kCr{"CR", 1, 2}, kConteudo{"Conteúdo", 3, 22},
      kSeparadores{"Separadores", 25, 2};
  static constexpr std::array kFields{kCr, kConteudo, kSeparadores};
};
static_assert(Covers(Cr30::kFields, 26));

}  // namespace tremvik
