#pragma once

#include <array>

#include "host/record_kind.h"
#include "layout/field.h"

namespace tremvik {

struct Cr20 {  // one occurrence of a declaration
  static constexpr Kind kKind = Kind::kCr20;
  static constexpr Field<Cr20> kCr{"CR", 1, 2}, kCodSubItem{"CódSubItem", 3, 5}, kValor{"Valor", 8, 15},
      kPropriaOuST{"PrópriaOuST", 23, 1}, kFLegal{"FLegal", 24, 100}, kOcorrencia{"Ocorrência", 124, 300},
      kQ25{"Q25", 424, 4}, kQ26{"Q26", 428, 4}, kQ27{"Q27", 432, 4}, kQ28{"Q28", 436, 4},
      kSeparadores{"Separadores", 440, 2};
  static constexpr std::array kFields{kCr,  kCodSubItem, kValor, kPropriaOuST, kFLegal,     kOcorrencia,
                                      kQ25, kQ26,        kQ27,   kQ28,         kSeparadores};
};
static_assert(Covers(Cr20::kFields, 441));

}  // namespace tremvik
