#include <array>

#include "checks/reasons.h"
#include "records/occurrence_details.h"
#include "records/without_fields.h"
#include "runtime/display.h"
#include "runtime/numbers.h"

namespace tremvik {
namespace {

using C = Cr25;

Verdict ValidarCamposCR25(const Record<Cr25>& r, Components& componentes) {
  if (LefRigNumChr(r[C::kCr]) || Val(r[C::kCr]) != 25) {
    return Refuse("CR25-05", r, C::kCr, "Tabela 07, CR=25, Campo - CR", "Inconsistentes, Posição 1");
  }
  if (LefRigNumChr(r[C::kIE])) {
    return Refuse("CR25-06", r, C::kIE, "Tabela 07, CR=25, Campo - IE", "Inconsistente, Posição 3");
  }
  if (!componentes.documentos().ValidarIE(r[C::kIE])) {
    return Refuse("CR25-07", r, C::kIE, "Tabela 07, CR=25, Campo - IE", "Inválida, Posição 3")
        .Porque(razao::Digitos(kMascaraIE, componentes.documentos().IECerta(r[C::kIE])));
  }
  if (r[C::kSeparadores] != kCrLf) {
    return Refuse("CR25-08", r, C::kSeparadores, "Tabela 07, CR=25, Campo - Separadores",
                  "Inconsistente, Posição 30");
  }
  if (LefRigNumChr(r[C::kValor])) {
    return Refuse("CR25-09", r, C::kValor, "Tabela 07, CR=25, Campo - Valor", "Inconsistente, Posição 15");
  }
  return Accepted;
}

void GravarCR25(const Record<Cr25>& r, const Record<Cr20>& ocorrencia, Components& componentes) {
  Gravador& gravador = componentes.gravador(Kind::kCr25);
  if (!gravador.LeCampos()) return GravarSemCampos<C>(r, std::array{C::kValor}, gravador);
  GravarChaveOcorrencia(ocorrencia, gravador);
  gravador.Campo(C::kIE.name, Mascara(kMascaraIE, r[C::kIE]));
  gravador.Campo(C::kValor.name, FomataValor(r[C::kValor]));
  gravador.Gravar();
}

}  // namespace

Verdict ValidarCR25(Pass& pass, EstadoOcorrencia& ocorrencia) {
  Record<Cr25>& r = pass.registros.RegistroCR25;
  const Record<Cr20>& pai = pass.registros.RegistroCR20;
  ShortText anterior;
  for (int i = 0; i < ocorrencia.QtdePendenteCR25; ++i) {
    pass.arquivo.Next(r);
    if (r[C::kSeparadores] != kCrLf) {
      return Refuse("CR25-01", r, C::kSeparadores, "Tabela 7, CR=25 Campo - Separadores",
                    "inconsistente, Posição 30");
    }
    if (pass.arquivo.EndOfFile()) {
      return Refuse("CR25-02", pai, Cr20::kQ25, "Tabela 7, CR=20 Campo - Q25", "inconsistente, Posição 424")
          .Porque(razao::Lidos(ocorrencia.QtdePendenteCR25, i));
    }
    if (LefRigNumChr(r[C::kIE])) {
      return Refuse("CR25-03", r, C::kIE, "Tabela 7, CR=25 Campo - IE", "Inconsistente, Posição 3");
    }
    if (anterior.view() >= r[C::kIE]) {
      return Refuse("CR25-04", r, C::kIE, "Tabela 7, CR=25 Campo - IE", "fora de sequência, Posição 3")
          .Porque(razao::Ordem(Mascara(kMascaraIE, anterior), Mascara(kMascaraIE, r[C::kIE])));
    }
    anterior = r[C::kIE];
    if (auto refused = ValidarCamposCR25(r, pass.componentes)) return refused;
    GravarCR25(r, pai, pass.componentes);
    ocorrencia.SomaValorCR25a27 += Val(r[C::kValor]);
  }
  return Accepted;
}

}  // namespace tremvik
