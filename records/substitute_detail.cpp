#include <array>

#include "checks/dates.h"
#include "checks/reasons.h"
#include "records/occurrence_details.h"
#include "records/without_fields.h"
#include "runtime/display.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace tremvik {
namespace {

using C = Cr26;

// The columns that these texts name are those of an older layout with a six-digit NF.
Verdict ValidarCamposCR26(const Record<Cr26>& r, Components& componentes) {
  if (LefRigNumChr(r[C::kCr]) || Val(r[C::kCr]) != 26) {
    return Refuse("CR26-04", r, C::kCr, "Tabela 16, CR=26, Campo - CR", "Inconsistentes, Posição 1");
  }
  Utf8Buffer ie;  // no numeric test stands before the host's
  if (!componentes.documentos().ValidarIE(Utf8(r[C::kIESubstituto], ie))) {
    return Refuse("CR26-05", r, C::kIESubstituto, "Tabela 16, CR=26, Campo - IESubstituto",
                  "Inválida, Posição 3")
        .Porque(razao::Digitos(kMascaraIE, componentes.documentos().IECerta(Utf8(r[C::kIESubstituto], ie))));
  }
  if (LefRigNumChr(r[C::kNF])) {
    return Refuse("CR26-06", r, C::kNF, "Tabela 05, CR=26, Campo - NF", "Inconsistente, Posição 15");
  }
  if (LefRigNumChr(r[C::kDataInicio]) || ValidarData(r[C::kDataInicio])) {
    return Refuse("CR26-07", r, C::kDataInicio, "Tabela 16, CR=26, Campo - DataInicio",
                  "Inconsistente, Posição 21");
  }
  if (LefRigNumChr(r[C::kDataFim]) || ValidarData(r[C::kDataFim])) {
    return Refuse("CR26-08", r, C::kDataFim, "Tabela 16, CR=26, Campo - DataFim",
                  "Inconsistente, Posição 27");
  }
  if (r[C::kSeparadores] != kCrLf) {
    return Refuse("CR26-09", r, C::kSeparadores, "Tabela 16, CR=26, Campo - Separadores",
                  "Inconsistente, Posição 48");
  }
  if (LefRigNumChr(r[C::kValor])) {
    return Refuse("CR26-10", r, C::kValor, "Tabela 16, CR=26, Campo - Valor", "Inconsistente, Posição 33");
  }
  return Accepted;
}

// Sub-item 210 requires an invoice number, 211 forbids one.
Verdict ValidarCruzadoCR26(const Record<Cr26>& r, const SubItem& sub_item, const Record<Cr05>& cabecalho) {
  if (sub_item.right3 == 211 && Val(r[C::kNF]) > 0) {
    return Refuse("CR26-11", r, C::kNF, "Tabela 6_x_16, CRs 20_x_26, Campo - NF",
                  "Inconsistente, Posição 3_x_15");
  }
  if (sub_item.right3 == 210 && Val(r[C::kNF]) == 0) {
    return Refuse("CR26-12", r, C::kNF, "Tabela 6_x_16, CRs 20_x_26, Campo - NF",
                  "Inconsistente, Posição 3_x_15");
  }
  if (r[C::kDataFim] < r[C::kDataInicio] || r[C::kDataFim] > cabecalho[Cr05::kRef]) {
    return Refuse("CR26-13", r, C::kDataFim, "Tabela 16, CR=26, Campo - DataFim_x_DataInicio",
                  "Inconsistente, Posições 27_x_21")
        .Porque("DataInicio: " + razao::Mes(r[C::kDataInicio]) + "; DataFim: " + razao::Mes(r[C::kDataFim]) +
                "; Ref: " + razao::Mes(cabecalho[Cr05::kRef]));
  }
  return Accepted;
}

void GravarCR26(const Record<Cr26>& r, const Record<Cr20>& ocorrencia, Components& componentes) {
  Gravador& gravador = componentes.gravador(Kind::kCr26);
  if (!gravador.LeCampos()) return GravarSemCampos<C>(r, std::array{C::kValor}, gravador);
  GravarChaveOcorrencia(ocorrencia, gravador);
  gravador.Campo(C::kIESubstituto.name, Mascara(kMascaraIE, r[C::kIESubstituto]));
  gravador.Campo(C::kNF.name, r[C::kNF]);
  gravador.Campo(C::kDataInicio.name, DiaVinte(r[C::kDataInicio]));
  gravador.Campo(C::kDataFim.name, DiaVinte(r[C::kDataFim]));
  gravador.Campo(C::kValor.name, FomataValor(r[C::kValor]));
  gravador.Gravar();
}

}  // namespace

Verdict ValidarCR26(Pass& pass, const SubItem& sub_item, EstadoOcorrencia& ocorrencia) {
  Record<Cr26>& r = pass.registros.RegistroCR26;
  const Record<Cr20>& pai = pass.registros.RegistroCR20;
  ShortText anterior;
  for (int i = 0; i < ocorrencia.QtdePendenteCR26; ++i) {
    pass.arquivo.Next(r);
    if (r[C::kSeparadores] != kCrLf) {
      return Refuse("CR26-01", r, C::kSeparadores, "Tabela 16, CR=26 Campo - Separadores",
                    "inconsistente, Posição 48");
    }
    if (pass.arquivo.EndOfFile()) {
      return Refuse("CR26-02", pai, Cr20::kQ26, "Tabela 16, CR=26 Campo - Q26", "inconsistente, Posição 48")
          .Porque(razao::Lidos(ocorrencia.QtdePendenteCR26, i));
    }
    const ShortText chave = ShortText(r[C::kIESubstituto]).Append(r[C::kNF]);
    if (anterior.view() >= chave.view()) {
      return Refuse("CR26-03", r, C::kIESubstituto, "Tabela 16, CR=26 Campo - IESubstituto",
                    "inconsistente, Posições 3_x_15")
          .Porque(razao::Ordem(ChaveComNF(anterior), ChaveComNF(chave)));
    }
    anterior = chave;
    if (auto refused = ValidarCamposCR26(r, pass.componentes)) return refused;
    if (auto refused = ValidarCruzadoCR26(r, sub_item, pass.registros.RegistroDeclaracao)) return refused;
    GravarCR26(r, pai, pass.componentes);
    ocorrencia.SomaValorCR25a27 += Val(r[C::kValor]);
  }
  return Accepted;
}

}  // namespace tremvik
