#include <array>

#include "checks/credit_code.h"
#include "checks/reasons.h"
#include "records/occurrence_details.h"
#include "records/without_fields.h"
#include "runtime/display.h"
#include "runtime/numbers.h"

namespace tremvik {
namespace {

using C = Cr28;

Verdict ValidarCamposCR28(const Record<Cr28>& r) {
  if (LefRigNumChr(r[C::kCr]) || Val(r[C::kCr]) != 28) {
    return Refuse("CR28-05", r, C::kCr, "Tabela 19, CR=28, Campo - CR", "Inconsistentes, Posição 1");
  }
  if (r[C::kSeparadores] != kCrLf) {
    return Refuse("CR28-06", r, C::kSeparadores, "Tabela 19, CR=28, Campo - Separadores",
                  "Inconsistente, Posição 29");
  }
  if (LefRigNumChr(r[C::kValor])) {
    return Refuse("CR28-07", r, C::kValor, "Tabela 19, CR=28, Campo - Valor", "Inconsistente, Posição 15");
  }
  return Accepted;
}

void GravarCR28(const Record<Cr28>& r, const Record<Cr20>& ocorrencia, Components& componentes) {
  Gravador& gravador = componentes.gravador(Kind::kCr28);
  if (!gravador.LeCampos()) return GravarSemCampos<C>(r, std::array{C::kValor}, gravador);
  GravarChaveOcorrencia(ocorrencia, gravador);
  gravador.Campo(C::kCodAutorizacao.name, r[C::kCodAutorizacao]);
  gravador.Campo(C::kValor.name, FomataValor(r[C::kValor]));
  gravador.Gravar();
}

}  // namespace

// The texts of one field name different tables and record codes; each holds where it stands.
Verdict ValidarCR28(Pass& pass, EstadoOcorrencia& ocorrencia) {
  Record<Cr28>& r = pass.registros.RegistroCR28;
  const Record<Cr20>& pai = pass.registros.RegistroCR20;
  const std::string_view ie = pass.registros.RegistroDeclaracao[Cr05::kIE];
  ShortText anterior;
  for (int i = 0; i < ocorrencia.QtdePendenteCR28; ++i) {
    pass.arquivo.Next(r);
    if (r[C::kSeparadores] != kCrLf) {
      return Refuse("CR28-01", r, C::kSeparadores, "Tabela 18, CR=28 Campo - Separadores",
                    "inconsistente, Posição 29");
    }
    if (pass.arquivo.EndOfFile()) {
      return Refuse("CR28-02", pai, Cr20::kQ28, "Tabela 6, CR=20 Campo - Q28", "inconsistente, Posição 436")
          .Porque(razao::Lidos(ocorrencia.QtdePendenteCR28, i));
    }
    if (anterior.view() >= r[C::kCodAutorizacao]) {
      return Refuse("CR28-03", r, C::kCodAutorizacao, "Tabela 19, CR=29 Campo - CodAutorizacao",
                    "inconsistente, Posição 3")
          .Porque(razao::Ordem(Utf8(anterior), Utf8(r[C::kCodAutorizacao])));
    }
    if (CodCredAcumuladoRejeitado(r[C::kCodAutorizacao], r[C::kValor], pai[Cr20::kCodSubItem], ie)) {
      return Refuse("CR28-04", r, C::kCodAutorizacao, "Tabela 18, CR=28 Campo - CodAutorizacao",
                    "inconsistente, Posição 3")
          .Porque(razao::CodigoCerto(InicioDoCodigo(r[C::kValor], pai[Cr20::kCodSubItem], ie),
                                     r[C::kCodAutorizacao]));
    }
    anterior = r[C::kCodAutorizacao];
    if (auto refused = ValidarCamposCR28(r)) return refused;
    GravarCR28(r, pai, pass.componentes);
    ocorrencia.SomaValorCR28 += Val(r[C::kValor]);
  }
  return Accepted;
}

}  // namespace tremvik
