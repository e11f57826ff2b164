#pragma once

#include <array>

#include "host/record_kind.h"
#include "layout/field.h"

namespace tremvik {

struct Cr18 {  // free-zone shipment of an interstate detail; of its content only the place is settled
  static constexpr Kind kKind = Kind::kCr18;
  static constexpr Field<Cr18> kCr{"CR", 1, 2}, kConteudo{"Conteúdo", 3, 51},
      kSeparadores{"Separadores", 54, 2};
  static constexpr std::array kFields{kCr, kConteudo, kSeparadores};
};
static_assert(Covers(Cr18::kFields, 55));

}  // namespace tremvik
