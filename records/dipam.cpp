#include "records/dipam.h"

#include "checks/reasons.h"
#include "records/as_it_stands.h"
#include "runtime/numbers.h"

namespace tremvik {

Verdict ValidarCR30(Pass& pass) {
  using C = Cr30;
  Record<Cr30>& r = pass.registros.RegistroCR30;
  for (int i = 0; i < pass.declaracao.QtdeCR30; ++i) {
    pass.arquivo.Next(r);
    if (LefRigNumChr(r[C::kCr]) || Val(r[C::kCr]) != 30) {
      return Refuse("CR30-01", r, C::kCr, "Tabela 08, CR=30, Campo - CR ou Q30",
                    "Inconsistentes, Posição 1 ou 158");
    }
    if (r[C::kSeparadores] != kCrLf) {
      return Refuse("CR30-02", r, C::kSeparadores, "Tabela 8, CR=30 Campo - Separadores",
                    "inconsistente, Posição 25");
    }
    if (pass.arquivo.EndOfFile()) {
      return Refuse("CR30-03", pass.registros.RegistroDeclaracao, Cr05::kQ30, "Tabela 2, CR=05 Campo - Q30",
                    "inconsistente, Posição 158")
          .Porque(razao::Lidos(pass.declaracao.QtdeCR30, i));
    }
    GravarComoEsta(r, pass.componentes.gravador(Kind::kCr30));
  }
  return Accepted;
}

}  // namespace tremvik
