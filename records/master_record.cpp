#include "records/master_record.h"

#include "checks/dates.h"
#include "runtime/numbers.h"

namespace tremvik {

Verdict ValidarCR01(const Record<Cr01>& r, std::int16_t& QuantidadeDeclaracoes) {
  using C = Cr01;
  if (LefRigNumChr(r[C::kCr]) || r[C::kCr] != "01") {
    return Refuse("CR01-01", r, C::kCr, "Tabela 01, CR=01, Campo - CR",
                  "Inválido ou incompatível com a quantidade, Posição 1");
  }
  if (LefRigNumChr(r[C::kTipoDocto]) || r[C::kTipoDocto] != "01") {
    return Refuse("CR01-02", r, C::kTipoDocto, "Tabela 01, CR=01, Campo - TipoDocto",
                  "Inconsistente, Posição 3 ");
  }
  if (LefRigNumChr(r[C::kDataGeracao], true) || ValidarData(r[C::kDataGeracao])) {
    return Refuse("CR01-03", r, C::kDataGeracao, "Tabela 01, CR=01, Campo - DataGeração",
                  "Inconsistente, Posição 5 ");
  }
  if (LefRigNumChr(r[C::kHoraGeracao]) || ValidarHora(r[C::kHoraGeracao])) {
    return Refuse("CR01-04", r, C::kHoraGeracao, "Tabela 01, CR=01, Campo - HoraGeração",
                  "Inconsistente, Posição 13 ");
  }
  if (LefRigNumChr(r[C::kVersaoFrontEnd]) || r[C::kVersaoFrontEnd] != "0000") {
    return Refuse("CR01-05", r, C::kVersaoFrontEnd, "Tabela 01, CR=01, Campo - VersãoFrontEnd",
                  "Inconsistente, Posição 19");
  }
  if (LefRigNumChr(r[C::kVersaoPref]) || r[C::kVersaoPref] != "0210") {
    return Refuse("CR01-06", r, C::kVersaoPref, "Tabela 01, CR=01, Campo - VersãoPref",
                  "Inconsistente, Posição 23");
  }
  if (LefRigNumChr(r[C::kQ05], true)) {
    return Refuse("CR01-07", r, C::kQ05, "Tabela 01, CR=01, Campo - Q05", "Inconsistente, Posição 27");
  }
  if (r[C::kSeparadores] != kCrLf) {
    return Refuse("CR01-08", r, C::kSeparadores, "Tabela 01, CR=01, Campo - Separadores",
                  "Inconsistente, Posição 31");
  }
  QuantidadeDeclaracoes = ToInt16(r[C::kQ05]);
  return Accepted;
}

}  // namespace tremvik
