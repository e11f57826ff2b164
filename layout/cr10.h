#pragma once

#include <array>

#include "host/record_kind.h"
#include "layout/field.h"

namespace tremvik {

struct Cr10 {  // totals of one CFOP of a declaration
  static constexpr Kind kKind = Kind::kCr10;
  static constexpr Field<Cr10> kCr{"CR", 1, 2}, kCFOP{"CFOP", 3, 6}, kValorContabil{"ValorContábil", 9, 15},
      kBaseCalculo{"BaseCálculo", 24, 15}, kImposto{"Imposto", 39, 15},
      kIsentasNaoTrib{"IsentasNãoTrib", 54, 15}, kOutras{"Outras", 69, 15},
      kImpostoRetidoST{"ImpostoRetidoST", 84, 15}, kImpRetSubstitutoST{"ImpRetSubstitutoST", 99, 15},
      kImpRetSubstituido{"ImpRetSubstituÍdo", 114, 15}, kOutrosImpostos{"OutrosImpostos", 129, 15},
      kQ14{"Q14", 144, 4}, kSeparadores{"Separadores", 148, 2};
  static constexpr std::array kFields{kCr,
                                      kCFOP,
                                      kValorContabil,
                                      kBaseCalculo,
                                      kImposto,
                                      kIsentasNaoTrib,
                                      kOutras,
                                      kImpostoRetidoST,
                                      kImpRetSubstitutoST,
                                      kImpRetSubstituido,
                                      kOutrosImpostos,
                                      kQ14,
                                      kSeparadores};
};
static_assert(Covers(Cr10::kFields, 149));

}  // namespace tremvik
