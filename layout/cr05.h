#pragma once

#include <array>

#include "host/record_kind.h"
#include "layout/field.h"

namespace tremvik {

struct Cr05 {  // header of one declaration
  static constexpr Kind kKind = Kind::kCr05;
  static constexpr Field<Cr05> kCr{"CR", 1, 2}, kIE{"IE", 3, 12}, kCNPJ{"CNPJ", 15, 14}, kCNAE{"CNAE", 29, 7},
      kRegTrib{"RegTrib", 36, 2}, kRef{"Ref", 38, 6}, kRefInicial{"RefInicial", 44, 6}, kTipo{"Tipo", 50, 2},
      kMovimento{"Movimento", 52, 1}, kTransmitida{"Transmitida", 53, 1},
      kSaldoCredPeriodoAnt{"SaldoCredPeriodoAnt", 54, 15},
      kSaldoCredPeriodoAntST{"SaldoCredPeriodoAntST", 69, 15}, kSemRegra{"SemRegra", 84, 14},
      kOrigemPreDig{"OrigemPreDig", 98, 1}, kICMSFixPer{"ICMSFixPer", 99, 15},
      kChaveInterna{"ChaveInterna", 114, 32}, kQ07{"Q07", 146, 4}, kQ10{"Q10", 150, 4}, kQ20{"Q20", 154, 4},
      kQ30{"Q30", 158, 4}, kQ31{"Q31", 162, 4}, kSeparadores{"Separadores", 166, 2};
  static constexpr std::array kFields{kCr,
                                      kIE,
                                      kCNPJ,
                                      kCNAE,
                                      kRegTrib,
                                      kRef,
                                      kRefInicial,
                                      kTipo,
                                      kMovimento,
                                      kTransmitida,
                                      kSaldoCredPeriodoAnt,
                                      kSaldoCredPeriodoAntST,
                                      kSemRegra,
                                      kOrigemPreDig,
                                      kICMSFixPer,
                                      kChaveInterna,
                                      kQ07,
                                      kQ10,
                                      kQ20,
                                      kQ30,
                                      kQ31,
                                      kSeparadores};
};
static_assert(Covers(Cr05::kFields, 167));

}  // namespace tremvik
