#include <array>

#include "checks/reasons.h"
#include "records/occurrence_details.h"
#include "records/without_fields.h"
#include "runtime/display.h"
#include "runtime/numbers.h"

namespace tremvik {
namespace {

using C = Cr27;

// The columns that these texts name are those of an older layout with a six-digit NF.
Verdict ValidarCamposCR27(const Record<Cr27>& r, Components& componentes) {
  if (LefRigNumChr(r[C::kCr]) || Val(r[C::kCr]) != 27) {
    return Refuse("CR27-05", r, C::kCr, "Tabela 17, CR=27, Campo - CR", "Inconsistentes, Posição 1");
  }
  if (!componentes.documentos().ValidarIE(r[C::kIESubstituido])) {
    return Refuse("CR27-06", r, C::kIESubstituido, "Tabela 17, CR=27, Campo - IE", "Inválida, Posição 3")
        .Porque(razao::Digitos(kMascaraIE, componentes.documentos().IECerta(r[C::kIESubstituido])));
  }
  if (LefRigNumChr(r[C::kNF])) {
    return Refuse("CR27-07", r, C::kNF, "Tabela 17, CR=27, Campo - Nf", "Inconsistente, Posição 15");
  }
  if (r[C::kSeparadores] != kCrLf) {
    return Refuse("CR27-08", r, C::kSeparadores, "Tabela 17, CR=27, Campo - Separadores",
                  "Inconsistente, Posição 36");
  }
  if (LefRigNumChr(r[C::kValor])) {
    return Refuse("CR27-09", r, C::kValor, "Tabela 17, CR=27, Campo - Valor", "Inconsistente, Posição 21");
  }
  return Accepted;
}

// Sub-item 701 requires an invoice number, 702 forbids one.
Verdict ValidarCruzadoCR27(const Record<Cr27>& r, const SubItem& sub_item) {
  if (sub_item.right3 == 701 && Val(r[C::kNF]) == 0) {
    return Refuse("CR27-10", r, C::kNF, "Tabela 6_x_17, CRs 20_x_27, Campo - CódSubItem_x_NF",
                  "Inconsistente, Posição 3_x_15");
  }
  if (sub_item.right3 == 702 && Val(r[C::kNF]) > 0) {
    return Refuse("CR27-11", r, C::kNF, "Tabela 6_x_17, CRs 20_x_27, Campo - CódSubItem_x_NF",
                  "Inconsistente, Posição 3_x_15");
  }
  return Accepted;
}

void GravarCR27(const Record<Cr27>& r, const Record<Cr20>& ocorrencia, Components& componentes) {
  Gravador& gravador = componentes.gravador(Kind::kCr27);
  if (!gravador.LeCampos()) return GravarSemCampos<C>(r, std::array{C::kValor}, gravador);
  GravarChaveOcorrencia(ocorrencia, gravador);
  gravador.Campo(C::kIESubstituido.name, Mascara(kMascaraIE, r[C::kIESubstituido]));
  gravador.Campo(C::kNF.name, r[C::kNF]);
  gravador.Campo(C::kValor.name, FomataValor(r[C::kValor]));
  gravador.Gravar();
}

}  // namespace

Verdict ValidarCR27(Pass& pass, const SubItem& sub_item, EstadoOcorrencia& ocorrencia) {
  Record<Cr27>& r = pass.registros.RegistroCR27;
  const Record<Cr20>& pai = pass.registros.RegistroCR20;
  ShortText anterior;
  for (int i = 0; i < ocorrencia.QtdePendenteCR27; ++i) {
    pass.arquivo.Next(r);
    if (r[C::kSeparadores] != kCrLf) {
      return Refuse("CR27-01", r, C::kSeparadores, "Tabela 17, CR=27 Campo - Separadores",
                    "inconsistente, Posição 36");
    }
    if (pass.arquivo.EndOfFile()) {
      return Refuse("CR27-02", pai, Cr20::kQ27, "Tabela 6, CR=20 Campo - Q27", "inconsistente, Posição 432")
          .Porque(razao::Lidos(ocorrencia.QtdePendenteCR27, i));
    }
    if (LefRigNumChr(r[C::kIESubstituido])) {
      return Refuse("CR27-03", r, C::kIESubstituido, "Tabela 17, CR=27 Campo - IESubstituído",
                    "inconsistente, Posição 3");
    }
    const ShortText chave = ShortText(r[C::kIESubstituido]).Append(r[C::kNF]);
    if (anterior.view() >= chave.view()) {
      return Refuse("CR27-04", r, C::kIESubstituido, "Tabela 17, CR=27 Campo - IESubstituído_x_NF",
                    "inconsistente, Posição 3_x_15")
          .Porque(razao::Ordem(ChaveComNF(anterior), ChaveComNF(chave)));
    }
    anterior = chave;
    if (auto refused = ValidarCamposCR27(r, pass.componentes)) return refused;
    if (auto refused = ValidarCruzadoCR27(r, sub_item)) return refused;
    GravarCR27(r, pai, pass.componentes);
    ocorrencia.SomaValorCR25a27 += Val(r[C::kValor]);
  }
  return Accepted;
}

}  // namespace tremvik
