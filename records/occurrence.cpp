#include "records/occurrence.h"

#include <array>

#include "checks/reasons.h"
#include "records/occurrence_details.h"
#include "records/occurrence_rules.h"
#include "records/without_fields.h"
#include "runtime/display.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace tremvik {
namespace {

using C = Cr20;

// An occurrence's key as people read it.
std::string ChaveLegivel(std::string_view chave) {
  if (chave.empty()) return {};
  return Utf8(Mascara(kMascaraSubItem, Left(chave, 5))) + ", PrópriaOuST " + Utf8(Mid(chave, 6, 1));
}

Verdict ValidarLeitura(const Pass& pass, const Record<Cr20>& r, int lidos,
                       const ShortText& ChaveAnteriorCR20) {
  if (r[C::kSeparadores] != kCrLf) {
    return Refuse("CR20-01", r, C::kSeparadores, "Tabela 6, CR=20, Campo - Separadores",
                  "inconsistente, Posição 428");
  }
  if (pass.arquivo.EndOfFile()) {
    return Refuse("CR20-02", pass.registros.RegistroDeclaracao, Cr05::kQ20, "Tabela 3, CR=05, Campo - Q10",
                  "inconsistente, Posição 118")
        .Porque(razao::Lidos(pass.declaracao.QtdeCR20, lidos));
  }
  if (LefRigNumChr(r[C::kCodSubItem])) {
    return Refuse("CR20-03", r, C::kCodSubItem, "Tabela 6, CR=20, Campo - CódSubitem",
                  "Inconsistente, Posição 3");
  }
  if (Right(r[C::kCodSubItem], 2) != "99" && ChaveAnteriorCR20.view() >= ChaveCR20(r).view()) {
    return Refuse("CR20-04", r, C::kCodSubItem, "Tabela 6, CR=20, Campo - CódSubitem",
                  "duplicado ou fora de sequência, Posição 3")
        .Porque(razao::Ordem(ChaveLegivel(ChaveAnteriorCR20), ChaveLegivel(ChaveCR20(r))));
  }
  return Accepted;
}

void GravarCR20(const Record<Cr20>& r, Components& componentes) {
  Gravador& gravador = componentes.gravador(Kind::kCr20);
  if (!gravador.LeCampos()) return GravarSemCampos<C>(r, std::array{C::kValor}, gravador);
  Utf8Buffer buffer;
  gravador.Campo(C::kCodSubItem.name, Mascara(kMascaraSubItem, r[C::kCodSubItem]));
  gravador.Campo(C::kValor.name, FomataValor(r[C::kValor]));
  gravador.Campo(C::kPropriaOuST.name, r[C::kPropriaOuST]);
  gravador.Campo(C::kFLegal.name, Utf8(TrimEnd(r[C::kFLegal]), buffer));
  gravador.Campo(C::kOcorrencia.name, Utf8(TrimEnd(r[C::kOcorrencia]), buffer));
  for (const auto& field : {C::kQ25, C::kQ26, C::kQ27, C::kQ28})
    gravador.Campo(field.name, r[field]);
  gravador.Gravar();
}

Verdict ValidarDetalhes(Pass& pass, const SubItem& sub_item, EstadoOcorrencia& ocorrencia) {
  if (ocorrencia.QtdePendenteCR25 > 0) {
    if (auto refused = ValidarCR25(pass, ocorrencia)) return refused;
    ocorrencia.QtdePendenteCR25 = 0;
  }
  if (ocorrencia.QtdePendenteCR26 > 0) {
    if (auto refused = ValidarCR26(pass, sub_item, ocorrencia)) return refused;
    ocorrencia.QtdePendenteCR26 = 0;
  }
  if (ocorrencia.QtdePendenteCR27 > 0) {
    if (auto refused = ValidarCR27(pass, sub_item, ocorrencia)) return refused;
    ocorrencia.QtdePendenteCR27 = 0;
  }
  if (ocorrencia.QtdePendenteCR28 > 0) {
    if (auto refused = ValidarCR28(pass, ocorrencia)) return refused;
    ocorrencia.QtdePendenteCR28 = 0;
  }
  return Accepted;
}

// The details that the occurrence announces and whose values are added up together.
std::string Parcelas(const Record<Cr20>& r) {
  std::string parcelas;
  const auto somar = [&](const Field<Cr20>& quantidade, std::string_view codigo) {
    if (Val(r[quantidade]) > 0) parcelas.append(parcelas.empty() ? "CR=" : ", ").append(codigo);
  };
  somar(C::kQ25, "25");
  somar(C::kQ26, "26");
  somar(C::kQ27, "27");
  return parcelas;
}

Verdict ValidarSomas(const Record<Cr20>& r, const EstadoOcorrencia& ocorrencia) {
  const bool com_25a27 = Val(r[C::kQ25]) > 0 || Val(r[C::kQ26]) > 0 || Val(r[C::kQ27]) > 0;
  if (com_25a27 && SemZeros(Val(r[C::kValor])).view() != SemZeros(ocorrencia.SomaValorCR25a27).view()) {
    return Refuse("CR20-49", r, C::kValor, "Tabela: 06, CR 20, Campo: Valor, Posição: 8",
                  "O campo Valor é diferente da somatória do campo Valor dos CR=25 ou 26 ou 27. ")
        .Porque(razao::Soma(Parcelas(r), ocorrencia.SomaValorCR25a27, Val(r[C::kValor])));
  }
  if (Val(r[C::kQ28]) > 0 &&
      SemZeros(Val(r[C::kValor])).view() != SemZeros(ocorrencia.SomaValorCR28).view()) {
    return Refuse("CR20-50", r, C::kValor, "Tabela: 06, CR 20, Campo: Valor, Posição: 8",
                  "O campo Valor é diferente da somatória do campo Valor dos CR=28. ")
        .Porque(razao::Soma("CR=28", ocorrencia.SomaValorCR28, Val(r[C::kValor])));
  }
  return Accepted;
}

}  // namespace

std::string ChaveComNF(std::string_view chave) {
  if (chave.empty()) return {};
  return Utf8(Mascara(kMascaraIE, Left(chave, 12))) + ", NF " + Utf8(Mid(chave, 13, chave.size()));
}

void GravarChaveOcorrencia(const Record<Cr20>& ocorrencia, Gravador& gravador) {
  gravador.Campo(C::kCodSubItem.name, Mascara(kMascaraSubItem, ocorrencia[C::kCodSubItem]));
  gravador.Campo(C::kPropriaOuST.name, ocorrencia[C::kPropriaOuST]);
}

Verdict ValidarCR20(Pass& pass) {
  Record<Cr20>& r = pass.registros.RegistroCR20;
  const Record<Cr05>& cabecalho = pass.registros.RegistroDeclaracao;
  const int ref = IntVal(cabecalho[Cr05::kRef]);
  ShortText ChaveAnteriorCR20;
  SubItensVistos vistos;
  for (int i = 0; i < pass.declaracao.QtdeCR20; ++i) {
    EstadoOcorrencia ocorrencia;
    pass.arquivo.Next(r);
    if (auto refused = ValidarLeitura(pass, r, i, ChaveAnteriorCR20)) return refused;
    const SubItem sub_item(r);
    if (auto refused = ValidarQuantidadesDoPeriodo(r, sub_item, ref)) return refused;
    if (auto refused = ValidarSubItemDoPeriodo(r, sub_item, cabecalho, ref, vistos)) return refused;
    ChaveAnteriorCR20 = ChaveCR20(r);
    if (auto refused = ValidarQuantidadesDoSubItem(r, sub_item)) return refused;
    if (auto refused = ValidarCamposCR20(pass, ocorrencia)) return refused;
    if (auto refused = ValidarCruzadoCR20(r, sub_item)) return refused;
    GravarCR20(r, pass.componentes);
    if (auto refused = ValidarDetalhes(pass, sub_item, ocorrencia)) return refused;
    if (auto refused = ValidarSomas(r, ocorrencia)) return refused;
  }
  return Accepted;
}

}  // namespace tremvik
