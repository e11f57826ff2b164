#include "records/exports.h"

#include "checks/reasons.h"
#include "records/without_fields.h"
#include "runtime/display.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace tremvik {
namespace {

using C = Cr31;

Verdict ValidarCamposCR31(const Record<Cr31>& r) {
  if (LefRigNumChr(r[C::kCr])) {
    return Refuse("CR31-04", r, C::kCr, "Tabela 05, CR=31, Campo - CR ", "Inconsistentes, Posição 1");
  }
  if (Val(r[C::kCr]) != 31) {
    return Refuse("CR31-05", r, C::kCr, "Tabela 05, CR=31, Campo - CR ", "Inconsistentes, Posição 1");
  }
  if (LefRigNumChr(r[C::kRE])) {
    return Refuse("CR31-06", r, C::kRE, "Tabela 18, CR=31, Campo - RE", "Inconsistente, Posição 3");
  }
  if (r[C::kSeparadores] != kCrLf) {
    return Refuse("CR31-07", r, C::kSeparadores, "Tabela 18, CR=31, Campo - Separadores",
                  "Inconsistente, Posição 18");
  }
  return Accepted;
}

void GravarCR31(const Record<Cr31>& r, Components& componentes) {
  Gravador& gravador = componentes.gravador(Kind::kCr31);
  if (!gravador.LeCampos()) return GravarSemCampos<C>(r, {}, gravador);
  gravador.Campo(C::kRE.name, Mascara(kMascaraRE, Right(r[C::kRE], 12)));
  gravador.Gravar();
}

}  // namespace

Verdict ValidarCR31(Pass& pass) {
  Record<Cr31>& r = pass.registros.RegistroCR31;
  ShortText UltimoRE;
  for (int i = 0; i < pass.declaracao.QtdeCR31; ++i) {
    pass.arquivo.Next(r);
    if (r[C::kSeparadores] != kCrLf) {
      return Refuse("CR31-01", r, C::kSeparadores, "Tabela 18, CR=31 Campo - Separadores",
                    "inconsistente, Posição 18");
    }
    if (pass.arquivo.EndOfFile()) {
      return Refuse("CR31-02", pass.registros.RegistroDeclaracao, Cr05::kQ31, "Tabela 2, CR=05 Campo - Q31",
                    "inconsistente, Posição 158")
          .Porque(razao::Lidos(pass.declaracao.QtdeCR31, i));
    }
    if (r[C::kRE] <= UltimoRE.view()) {
      return Refuse("CR31-03", r, C::kRE, "Tabela 18, CR=31 Campo - RE", "inconsistente, Posição 3")
          .Porque(razao::Ordem(Utf8(UltimoRE), Utf8(r[C::kRE])));
    }
    UltimoRE = r[C::kRE];
    if (auto refused = ValidarCamposCR31(r)) return refused;
    GravarCR31(r, pass.componentes);
  }
  return Accepted;
}

}  // namespace tremvik
