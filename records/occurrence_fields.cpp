#include <array>

#include "checks/period.h"
#include "records/occurrence_rules.h"
#include "runtime/display.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace tremvik {
namespace {

using C = Cr20;

// Sub-items that carry a legal basis and a text: the ones ending in 99, and only they.
Verdict ValidarTextos(const Record<Cr20>& r, const SubItem& sub_item) {
  const bool termina_em_99 = sub_item.right2 == "99";
  const bool sem_textos = IsBlank(r[C::kFLegal]) && IsBlank(r[C::kOcorrencia]);
  if (termina_em_99 == sem_textos) {
    return Refuse("CR20-38", r, C::kCodSubItem, "Tabela 06, CR=20, Campo - CódSubitem_e_FLegal_ou_Ocorrência",
                  "Inconsistente, Posição 3_e_24_ou_124");
  }
  return Accepted;
}

}  // namespace

SubItem::SubItem(const Record<Cr20>& r)
    : codigo(r[C::kCodSubItem]),
      right2(Right(codigo, 2)),
      right3(IntVal(Right(codigo, 3))),
      numero(IntVal(codigo)) {}

ShortText ChaveCR20(const Record<Cr20>& r) { return ShortText(r[C::kCodSubItem]).Append(r[C::kPropriaOuST]); }

Verdict ValidarQuantidadesDoSubItem(const Record<Cr20>& r, const SubItem& sub_item) {
  constexpr std::array kComQ25{Range{218, 219}, Range{225, 226}, Range{729, 730}, Range{747, 748},
                               Range{704, 707}};
  constexpr std::array kComQ28{220, 221, 740, 741, 223, 744, 745};
  if (Val(r[C::kQ25]) > 0 && !In(kComQ25, sub_item.numero)) {
    return Refuse("CR20-23", r, C::kQ25, "Tabela 06, CR=20, Campo - Q25", "Posição 424. Inconsistente ");
  }
  if (Val(r[C::kQ26]) > 0 && sub_item.right3 != 210 && sub_item.right3 != 211) {
    return Refuse("CR20-24", r, C::kQ26, "Tabela 06, CR=20, Campo - Q26", "Posição 428. Inconsistente ");
  }
  if (Val(r[C::kQ27]) > 0 && sub_item.right3 != 701 && sub_item.right3 != 702) {
    return Refuse("CR20-25", r, C::kQ27, "Tabela 06, CR=20, Campo - Q27", "Posição 432. Inconsistente ");
  }
  if (Val(r[C::kQ28]) > 0 && !In(kComQ28, sub_item.right3)) {
    return Refuse("CR20-26", r, C::kQ28, "Tabela 13, CR=20, Campo - Q28", "Posição 432. Inconsistente ");
  }
  if (Val(r[C::kQ28]) == 0 && In(kComQ28, sub_item.right3)) {
    return Refuse("CR20-27", r, C::kQ28, "Tabela 13, CR=20, Campo - Q28", "Posição 432. Inconsistente ");
  }
  return Accepted;
}

// Q28 has no numeric test: what is no number raises error 13 when it is stored.
Verdict ValidarCamposCR20(const Pass& pass, EstadoOcorrencia& ocorrencia) {
  const Record<Cr20>& r = pass.registros.RegistroCR20;
  const Record<Cr05>& cabecalho = pass.registros.RegistroDeclaracao;
  if (LefRigNumChr(r[C::kCr])) {
    return Refuse("CR20-28", r, C::kCr, "Tabela 06, CR=20, Campo - CR ", "Inconsistentes, Posição 1");
  }
  if (Val(r[C::kCr]) != 20) {
    return Refuse("CR20-29", r, C::kCr, "Tabela 06, CR=20, Campo - CR ou Q20",
                  "Inconsistentes, Posição 1 ou 118");
  }
  if (LefRigNumChr(r[C::kCodSubItem]) || Val(r[C::kCodSubItem]) <= 0) {
    return Refuse("CR20-30", r, C::kCodSubItem, "Tabela 06, CR=20, Campo - CódSubitem",
                  "Inconsistente, Posição 3");
  }
  if (pass.fixas.NaoExisteEmFixas(Kind::kCr20, Mascara(kMascaraSubItem, r[C::kCodSubItem]),
                                  r[C::kPropriaOuST])) {
    return Refuse("CR20-31", r, C::kCodSubItem, "Tabela 06, CR=20, Campo - CódSubitem",
                  "Não encontrado na tabela, Posição 3");
  }
  if (LefRigNumChr(r[C::kValor])) {
    return Refuse("CR20-32", r, C::kValor, "Tabela 06, CR=20, Campo - Valor", "Inconsistente, Posição 8");
  }
  if (LefRigNumChr(r[C::kPropriaOuST]) || Val(r[C::kPropriaOuST]) > 1 ||
      (Val(r[C::kPropriaOuST]) == 0 && Val(cabecalho[Cr05::kRegTrib]) == 4)) {
    return Refuse("CR20-33", r, C::kPropriaOuST, "Tabela 06, CR=20, Campo - PrópriaOuST",
                  "Inconsistente, Posição 23");
  }
  if (LefRigNumChr(r[C::kQ25])) {
    return Refuse("CR20-34", r, C::kQ25, "Tabela 06, CR=20, Campo - Q25", "Inconsistente, Posição 424");
  }
  if (r[C::kSeparadores] != kCrLf) {
    return Refuse("CR20-35", r, C::kSeparadores, "Tabela 06, CR=20, Campo - Separadores",
                  "Inconsistente, Posição 436");
  }
  if (LefRigNumChr(r[C::kQ26])) {
    return Refuse("CR20-36", r, C::kQ26, "Tabela 06, CR=20, Campo - Q26", "Inconsistente, Posição 428");
  }
  if (LefRigNumChr(r[C::kQ27])) {
    return Refuse("CR20-37", r, C::kQ27, "Tabela 06, CR=20, Campo - Q27", "Inconsistente, Posição 432");
  }
  ocorrencia.QtdePendenteCR25 = ToInt16(r[C::kQ25]);
  ocorrencia.QtdePendenteCR26 = ToInt16(r[C::kQ26]);
  ocorrencia.QtdePendenteCR27 = ToInt16(r[C::kQ27]);
  ocorrencia.QtdePendenteCR28 = ToInt16(r[C::kQ28]);
  return Accepted;
}

// Some of these rules demand what others refuse for the same sub-item; each holds as it stands.
Verdict ValidarCruzadoCR20(const Record<Cr20>& r, const SubItem& sub_item) {
  constexpr Range k704a707{704, 707};
  const std::string_view item = Left(sub_item.codigo, 3);
  const bool propria = Val(r[C::kPropriaOuST]) == 0;
  const double q25 = Val(r[C::kQ25]);
  const int n = sub_item.right3;
  if (auto refused = ValidarTextos(r, sub_item)) return refused;
  if ((item == "002" || item == "003" || item == "007" || item == "008") && Val(r[C::kValor]) == 0) {
    return Refuse("CR20-39", r, C::kValor, "Tabela 06, CR=20, Campo - Valor",
                  "Não informado, Posição 3 ou 8");
  }
  if (q25 == 0 && r[C::kPropriaOuST] == "0" && sub_item.Entre704e707()) {
    return Refuse("CR20-40", r, C::kQ25, "Tabela 06, CR=20, Campo - Q25", "Inconsistente,Posição 424 ");
  }
  if (q25 > 0 && sub_item.codigo != "00730" && sub_item.codigo != "00729" && !sub_item.Entre704e707()) {
    return Refuse("CR20-41", r, C::kCodSubItem, "Tabela 06, CR=20, Campo - CódSubitem",
                  "Informação para Ocorrências Inconsistente ,Posição 23 ou 24 ");
  }
  if (sub_item.right2 == "99" && (!ContemLetra(r[C::kFLegal]) || !ContemLetra(r[C::kOcorrencia]))) {
    return Refuse("CR20-42", r, ContemLetra(r[C::kFLegal]) ? C::kOcorrencia : C::kFLegal,
                  "Tabela 06, CR=20, Campo - CódSubitem",
                  "Falta informação (Flegal e ou Ocorrência), Posição 24 e ou 124 ");
  }
  if (propria && k704a707.Holds(n) && q25 == 0) {
    return Refuse("CR20-43", r, C::kQ25, "Tabela 06, CR=20, Campo - Q25", "Posição 1. Inconsistente ");
  }
  if (propria && (n == 218 || n == 729 || n == 226) && q25 != 1) {
    return Refuse("CR20-44", r, C::kQ25, "Tabela 06, CR=20, Campo - Q25", "Posição 424. Inconsistente ");
  }
  if (propria && (n == 219 || n == 730 || n == 748) && q25 == 0) {
    return Refuse("CR20-45", r, C::kQ25, "Tabela 06, CR=20, Campo - Q25", "Posição 424.Inconsistente ");
  }
  if ((n == 210 || n == 211) && Val(r[C::kQ26]) < 1) {
    return Refuse("CR20-46", r, C::kQ26, "Tabela 06, CR=20, Campo - Q26", "Posição 428. Inconsistente ");
  }
  if (!propria && k704a707.Holds(n) && q25 != 0) {
    return Refuse("CR20-47", r, C::kPropriaOuST, "Tabela 06, CR=20, Campo - PrópriaOuST",
                  "Posição 23 inconsistente ");
  }
  if ((n == 701 || n == 702) && Val(r[C::kQ27]) == 0) {
    return Refuse("CR20-48", r, C::kQ27, "Tabela 06, CR=20, Campo - Q27", "Posição 432 inconsistente ");
  }
  return Accepted;
}

}  // namespace tremvik
