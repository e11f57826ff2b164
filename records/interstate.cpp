#include "records/interstate.h"

#include "checks/reasons.h"
#include "records/as_it_stands.h"
#include "records/free_zone.h"
#include "runtime/numbers.h"

namespace tremvik {

Verdict ValidarCR14(Pass& pass) {
  using C = Cr14;
  Record<Cr14>& r = pass.registros.RegistroCR14;
  for (int i = 0; i < pass.declaracao.QtdePendenteCR14; ++i) {
    pass.arquivo.Next(r);
    if (LefRigNumChr(r[C::kCr]) || Val(r[C::kCr]) != 14) {
      return Refuse("CR14-01", r, C::kCr, "Tabela 04, CR=14, Campo - CR ou Q14",
                    "Inconsistentes, Posição 1 ou 144");
    }
    if (r[C::kSeparadores] != kCrLf) {
      return Refuse("CR14-02", r, C::kSeparadores, "Tabela 4, CR=14 Campo - Separadores",
                    "inconsistente, Posição 145");
    }
    if (pass.arquivo.EndOfFile()) {
      return Refuse("CR14-03", pass.registros.RegistroCR10, Cr10::kQ14, "Tabela 3, CR=10 Campo - Q14",
                    "inconsistente, Posição 144")
          .Porque(razao::Lidos(pass.declaracao.QtdePendenteCR14, i));
    }
    if (LefRigNumChr(r[C::kQ18])) {
      return Refuse("CR14-04", r, C::kQ18, "Tabela 04, CR=14, Campo - Q18", "Inconsistente, Posição 141");
    }
    GravarComoEsta(r, pass.componentes.gravador(Kind::kCr14));
    if (auto refused = ValidarCR18(pass, ToInt16(r[C::kQ18]))) return refused;
  }
  return Accepted;
}

}  // namespace tremvik
