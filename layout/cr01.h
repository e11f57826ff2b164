#pragma once

#include <array>

#include "host/record_kind.h"
#include "layout/field.h"

namespace tremvik {

struct Cr01 {  // master record: identifies the file and announces its declarations
  static constexpr Kind kKind = Kind::kCr01;
  static constexpr Field<Cr01> kCr{"CR", 1, 2}, kTipoDocto{"TipoDocto", 3, 2},
      kDataGeracao{"DataGeração", 5, 8}, kHoraGeracao{"HoraGeração", 13, 6},
      kVersaoFrontEnd{"VersãoFrontEnd", 19, 4}, kVersaoPref{"VersãoPref", 23, 4}, kQ05{"Q05", 27, 4},
      kSeparadores{"Separadores", 31, 2};
  static constexpr std::array kFields{kCr,         kTipoDocto, kDataGeracao, kHoraGeracao, kVersaoFrontEnd,
                                      kVersaoPref, kQ05,       kSeparadores};
};
static_assert(Covers(Cr01::kFields, 32));

}  // namespace tremvik
