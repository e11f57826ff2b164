#include <string>

#include "checks/reasons.h"
#include "records/cfop.h"
#include "records/cfop_validity.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace tremvik {
namespace {

using C = Cr10;

Verdict ValidarCodigos(const Record<Cr10>& r, const Cfop& cfop) {
  if (LefRigNumChr(r[C::kCr])) {
    return Refuse("CR10-05", r, C::kCr, " Tabela 3, CR=10, Campo - CR Inconsistentes, Posição 1");
  }
  if (Val(r[C::kCr]) != 10) {
    return Refuse("CR10-06", r, C::kCr, "Tabela 3, CR=10, Campo - CR ou Q10",
                  "Inconsistentes, Posição 1 ou 114");
  }
  if (LefRigNumChr(r[C::kCFOP])) {
    return Refuse("CR10-07", r, C::kCFOP,
                  "Tabela 3, CR=10, Campo - CFOP Inconsistente, Posição 3 (1º Caso): " + Utf8(cfop.exibicao));
  }
  return Accepted;
}

Verdict ValidarValores(const Record<Cr10>& r, int ref) {
  if (LefRigNumChr(r[C::kValorContabil])) {
    return Refuse("CR10-10", r, C::kValorContabil, "Tabela 3, CR=10, Campo - ValorContábil",
                  "Inconsistente, Posição 9 ");
  }
  if (LefRigNumChr(r[C::kBaseCalculo])) {
    return Refuse("CR10-11", r, C::kBaseCalculo, "Tabela 3, CR=10, Campo - BaseCálculo",
                  "Inconsistente, Posição 24 ");
  }
  if (LefRigNumChr(r[C::kImposto])) {
    return Refuse("CR10-12", r, C::kImposto, "Tabela 3, CR=10, Campo - Imposto", "Inconsistente, Posição 39");
  }
  if (LefRigNumChr(r[C::kIsentasNaoTrib])) {
    return Refuse("CR10-13", r, C::kIsentasNaoTrib, "Tabela 3, CR=10, Campo - IsentasNãoTrib",
                  "Inconsistente, Posição 54 ");
  }
  if (LefRigNumChr(r[C::kOutras])) {
    return Refuse("CR10-14", r, C::kOutras, "Tabela 3, CR=10, Campo - Outras", "Inconsistente, Posição 69");
  }
  if (LefRigNumChr(r[C::kImpostoRetidoST])) {
    return Refuse("CR10-15", r, C::kImpostoRetidoST, "Tabela 3, CR=10, Campo - ImpostoRetidoST",
                  "Inconsistente, Posição 84");
  }
  if (ref > 200112 && Val(r[C::kImpostoRetidoST]) > 0) {
    return Refuse("CR10-16", r, C::kImpostoRetidoST, "Tabela 3, CR=10, Campo - ImpostoRetidoST",
                  "Inconsistente, Posição 84")
        .Porque(razao::Validade("ImpostoRetidoST", {0, 200112}, ref));
  }
  if (LefRigNumChr(r[C::kImpRetSubstitutoST])) {
    return Refuse("CR10-17", r, C::kImpRetSubstitutoST, "Tabela 3, CR=10, Campo - ImpRetSubstitutoST",
                  "Inconsistente, Posição 99");
  }
  if (LefRigNumChr(r[C::kImpRetSubstituido])) {
    return Refuse("CR10-18", r, C::kImpRetSubstituido, "Tabela 3, CR=10, Campo - ImpRetSubstituÍdo",
                  "Inconsistente, Posição 114");
  }
  if (LefRigNumChr(r[C::kOutrosImpostos])) {
    return Refuse("CR10-19", r, C::kOutrosImpostos, "Tabela 3, CR=10, Campo - OutrosImpostos",
                  "Inconsistente, Posição 129");
  }
  if (LefRigNumChr(r[C::kQ14])) {
    return Refuse("CR10-20", r, C::kQ14, "Tabela 3, CR=10, Campo - Q14", "Inconsistente, Posição 144");
  }
  if (r[C::kSeparadores] != kCrLf) {
    return Refuse("CR10-21", r, C::kSeparadores, "Tabela 3, CR=10, Campo - Separadores",
                  "Inconsistente, Posição 148");
  }
  return Accepted;
}

}  // namespace

Verdict ValidarCamposCR10(Pass& pass, const Cfop& cfop) {
  const Record<Cr10>& r = pass.registros.RegistroCR10;
  const Record<Cr05>& cabecalho = pass.registros.RegistroDeclaracao;
  if (auto refused = ValidarCodigos(r, cfop)) return refused;
  if (auto refused = ValidarCfopNaTabela(r, cfop, pass.fixas)) return refused;
  if (auto refused = ValidarValores(r, cfop.ref)) return refused;
  if (auto refused = ValidarCfopDoPeriodo(r, cfop)) return refused;
  if (Val(cabecalho[Cr05::kRegTrib]) == 4) {
    if (Val(r[C::kQ14]) != 0) {
      return Refuse("CR10-27", r, C::kQ14, "Tabela 3, CR=10, Campo - Q14",
                    "Inconsistente, Posição 144 (Regime = 04)");
    }
    if (auto refused = ValidarCfopDoRegime4(r, cfop)) return refused;
  } else {
    pass.declaracao.QtdePendenteCR14 = ToInt16(r[C::kQ14]);
  }
  return ValidarCfop1360(r, cfop);
}

}  // namespace tremvik
