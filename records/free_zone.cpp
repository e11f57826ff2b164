#include "records/free_zone.h"

#include "checks/reasons.h"
#include "records/as_it_stands.h"
#include "runtime/numbers.h"

namespace tremvik {

Verdict ValidarCR18(Pass& pass, int quantidade) {
  using C = Cr18;
  Record<Cr18>& r = pass.registros.RegistroCR18;
  const Record<Cr14>& interestadual = pass.registros.RegistroCR14;
  for (int i = 0; i < quantidade; ++i) {
    pass.arquivo.Next(r);
    if (LefRigNumChr(r[C::kCr]) || Val(r[C::kCr]) != 18) {
      return Refuse("CR18-01", r, C::kCr, "Tabela 05, CR=18, Campo - CR ou Q18",
                    "Inconsistentes, Posição 1 ou 141");
    }
    if (r[C::kSeparadores] != kCrLf) {
      return Refuse("CR18-02", r, C::kSeparadores, "Tabela 5, CR=18 Campo - Separadores",
                    "inconsistente, Posição 54");
    }
    if (pass.arquivo.EndOfFile()) {
      return Refuse("CR18-03", interestadual, Cr14::kQ18, "Tabela 4, CR=14 Campo - Q18",
                    "inconsistente, Posição 141")
          .Porque(razao::Lidos(quantidade, i));
    }
    GravarComoEsta(r, pass.componentes.gravador(Kind::kCr18));
  }
  return Accepted;
}

}  // namespace tremvik
