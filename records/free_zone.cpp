#include "records/free_zone.h"

#include "checks/numbers.h"
#include "checks/text.h"

namespace tremvik {
namespace {

using C = Cr18;

void GravarCR18(const Record<Cr18>& r, Components& componentes) {
  Gravador& gravador = componentes.gravador(Gravavel::kCr18);
  Utf8Buffer buffer;
  gravador.Campo("Registro", Utf8(r.content(), buffer));
  gravador.Gravar();
}

}  // namespace

Verdict ValidarCR18(Pass& pass) {
  Record<Cr18>& r = pass.registros.RegistroCR18;
  const Record<Cr14>& interestadual = pass.registros.RegistroCR14;
  const int quantidade = ToInt16(interestadual[Cr14::kQ18]);
  for (int i = 0; i < quantidade; ++i) {
    pass.arquivo.Next(r);
    if (r[C::kSeparadores] != kCrLf) {
      return Refuse(r, C::kSeparadores, "Tabela 5, CR=18 Campo - Separadores", "inconsistente, Posição 54");
    }
    if (pass.arquivo.EndOfFile()) {
      return Refuse(interestadual, Cr14::kQ18, "Tabela 4, CR=14 Campo - Q18", "inconsistente, Posição 141");
    }
    if (LefRigNumChr(r[C::kCr]) || Val(r[C::kCr]) != 18) {
      return Refuse(r, C::kCr, "Tabela 05, CR=18, Campo - CR ou Q18", "Inconsistentes, Posição 1 ou 141");
    }
    GravarCR18(r, pass.componentes);
  }
  return Accepted;
}

}  // namespace tremvik
