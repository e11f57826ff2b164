#include <algorithm>
#include <array>
#include <span>
#include <string>

#include "checks/period.h"
#include "checks/reasons.h"
#include "records/cfop.h"
#include "records/cfop_sets.h"
#include "records/cfop_validity.h"
#include "runtime/display.h"
#include "runtime/numbers.h"

namespace tremvik {
namespace {

using C = Cr10;

// Interstate CFOPs need interstate details, the others have none; the quantity is told with an older column.
Verdict ValidarCfopComQ14(const Record<Cr10>& r, const Cfop& cfop) {
  const bool interestadual = cfop.l1 == 2 || cfop.l1 == 6;
  if (interestadual && Val(r[C::kQ14]) == 0) {
    return Refuse("CR10-32", r, C::kQ14, "Tabela 3, CR=10, Campo - CFOP_x_Q14",
                  "Inválido, Posição 3_x_114 (A)");
  }
  if (!interestadual && Val(r[C::kQ14]) != 0) {
    return Refuse("CR10-33", r, C::kQ14, "Tabela 03, CR=10, Campo - CFOP_x_Q14",
                  "Inconsistente, Posição 3_x_114 (B)");
  }
  return Accepted;
}

// After the first test the tax is not 0, so its digits never equal 0: the first question is never asked.
Verdict ValidarImposto(const Pass& pass, const Record<Cr10>& r) {
  const double base = Val(r[C::kBaseCalculo]);
  if (base <= 0) return Accepted;
  const double imposto = Val(r[C::kImposto]);
  if (imposto == 0) {
    return Refuse("CR10-34", r, C::kImposto, "Tabela 03, CR=10, Campo - Imposto",
                  "Inconsistente, Posição 39.");
  }
  const auto perguntar = [&](RuleCode regra) {
    return pass.prompter.Perguntar(Refuse(regra, r, C::kImposto, "Tabela 03, CR=10, Campo - Imposto",
                                          "Inconsistente, Posição 39, Linha nº " + pass.declaracao.TextoLinha)
                                       .Porque(razao::Quarto(base, imposto)));
  };
  if (Val(SemZeros(imposto)) == 0) {
    if (auto refused = perguntar("CR10-35")) return refused;
  }
  if (r[C::kImposto] > QuinzeDigitos(base * 0.25).view()) {
    if (auto refused = perguntar("CR10-36")) return refused;
  }
  return Accepted;
}

// CFOPs created later than a period. The second row of 200805 compares the code with 6.36, which no code
// equals.
struct CriadoEm {
  RuleCode regra;
  int ref;
  std::span<const double> codigos;
};
constexpr std::array kDe200607{1505.0, 1506.0, 2505.0, 2506.0, 5504.0, 5505.0, 6504.0, 6505.0};
constexpr std::array kDe200907{5667.0, 6667.0, 7667.0};
constexpr std::array kDe201007{1934.0, 2934.0, 5934.0, 6934.0};
constexpr std::array kDe201101{1128.0, 2128.0, 3128.0};
constexpr std::array kDe200805{6360.0};
constexpr std::array kDe200805Fracao{6.36};
constexpr std::array kCriados{
    CriadoEm{"CR10-37", 200607, kDe200607}, CriadoEm{"CR10-38", 200907, kDe200907},
    CriadoEm{"CR10-39", 201007, kDe201007}, CriadoEm{"CR10-40", 201101, kDe201101},
    CriadoEm{"CR10-41", 200805, kDe200805}, CriadoEm{"CR10-42", 200805, kDe200805Fracao}};

Verdict ValidarCfopComReferencia(const Record<Cr10>& r, const Cfop& cfop) {
  constexpr std::array kSem2003{5109, 5110};
  constexpr std::array kDe200801{1360, 5360};
  constexpr std::array kDe200501{1930, 1934, 2930, 2934, 5359, 5933, 6359, 6933};
  for (const CriadoEm& criado : kCriados) {
    if (cfop.ref < criado.ref &&
        std::ranges::find(criado.codigos, static_cast<double>(cfop.l4)) != criado.codigos.end()) {
      return Refuse(criado.regra, r, C::kCFOP, "Tabela 03, CR=10, Campo - CFOP_x_Referencia",
                    "Inconsistente ")
          .Porque(ValidadeDoCfop(cfop, {criado.ref, kSemFim}));
    }
  }
  if (cfop.ref > 200212 && In(kSem2003, cfop.l4)) {
    return Refuse("CR10-43", r, C::kCFOP,
                  ComCodigo("Tabela 3, CR=10, Posição 3 - Campo CFOP Inválido para Ref > 200212 - CFOP = ",
                            cfop))
        .Porque(ValidadeDoCfop(cfop, {0, 200212}));
  }
  if (cfop.ref < 200801 && In(kDe200801, cfop.l4))
    return ForaDaTabela("CR10-44", r, cfop).Porque(ValidadeDoCfop(cfop, {200801, kSemFim}));
  if (cfop.ref <= 200412 && In(kDe200501, cfop.l4))
    return ForaDaTabela("CR10-45", r, cfop).Porque(ValidadeDoCfop(cfop, {200501, kSemFim}));
  return Accepted;
}

// The CFOPs for which the withheld-tax fields may be filled, by period: three characters of the code up to
// 200212, four after. The last band begins at 200805 itself, although its text says otherwise.
struct FaixaRetido {
  RuleCode regra;
  Range ref;
  int Cfop::*caracteres;
  std::span<const Range> cfops;
  std::string_view segundo;
};
constexpr std::array kRetidoAte2002{Range{170, 170}, Range{180, 180}, Range{270, 270}, Range{280, 280},
                                    Range{570, 570}, Range{580, 580}, Range{670, 670}, Range{680, 680},
                                    Range{196, 196}, Range{296, 296}, Range{597, 597}, Range{697, 697}};
constexpr std::array kRetidoDe2003{Range{1401, 1449}, Range{2401, 2449}, Range{5401, 5449},
                                   Range{6401, 6449}, Range{1900, 1999}, Range{2900, 2999},
                                   Range{5900, 5999}, Range{6900, 6999}};
constexpr auto kRetidoDe2004 = Joined(
    kRetidoDe2003, std::array{Range{1651, 1699}, Range{2651, 2699}, Range{5651, 5699}, Range{6651, 6699}});
constexpr auto kRetidoDe2008 = Joined(kRetidoDe2004, std::array{Range{1360, 1360}, Range{5360, 5360}});
constexpr auto kRetidoDe200805 = Joined(kRetidoDe2008, std::array{Range{6360, 6360}});
constexpr std::array kFaixasRetido{
    FaixaRetido{"CR10-47",
                {0, 200300},
                &Cfop::l3,
                kRetidoAte2002,
                "Inconsistente, Posição 3_x_99_x_114 (ImpRetSubstituido: Ref <= 200212)"},
    FaixaRetido{"CR10-48",
                {200301, 200312},
                &Cfop::l4,
                kRetidoDe2003,
                "Inconsistente, Posição 3_x_99_x_114 (ImpRetSubstituido: Ref > 200212)"},
    FaixaRetido{"CR10-49",
                {200401, 200712},
                &Cfop::l4,
                kRetidoDe2004,
                "Inconsistente, Posição 3_x_99_x_114 (ImpRetSubstituido: Ref > 200312 e Ref <= 200712)"},
    FaixaRetido{"CR10-50",
                {200801, 200804},
                &Cfop::l4,
                kRetidoDe2008,
                "Inconsistente, Posição 3_x_99_x_114 (ImpRetSubstituido: Ref > 200712)"},
    FaixaRetido{"CR10-51",
                {200805, kSemFim},
                &Cfop::l4,
                kRetidoDe200805,
                "Inconsistente, Posição 3_x_99_x_114 (ImpRetSubstituido: Ref > 200805)"},
};

// The two fields do not exist before 200201.
Verdict ValidarImpostoRetido(const Record<Cr10>& r, const Cfop& cfop) {
  const double retido = Val(r[C::kImpRetSubstitutoST]) + Val(r[C::kImpRetSubstituido]);
  const auto& campo = Val(r[C::kImpRetSubstitutoST]) != 0 ? C::kImpRetSubstitutoST : C::kImpRetSubstituido;
  if (cfop.ref < 200201 && retido > 0) {
    return Refuse("CR10-46", r, campo, "Tabela 03, CR=10, Campo - ImpRetSubstitutoST_x_ImpRetSubstituÍdo",
                  "Inconsistente, Posição 99_x_114")
        .Porque(razao::Validade(campo.name, {200201, kSemFim}, cfop.ref));
  }
  for (const FaixaRetido& faixa : kFaixasRetido) {
    if (!faixa.ref.Holds(cfop.ref) || In(faixa.cfops, cfop.*faixa.caracteres) || retido == 0) continue;
    return Refuse(faixa.regra, r, campo,
                  "Tabela 03, CR=10, Campo - CFOP_x_ImpRetSubstitutoST_x_ImpRetSubstituÍdo", faixa.segundo)
        .Porque(razao::Aceitos(faixa.cfops));
  }
  return Accepted;
}

// Operations that need DIPAM values in the declaration. The transport rows name another table and record than
// the rest.
struct RelacaoDipam {
  RuleCode regra;
  Range ref;
  int Cfop::*caracteres;
  std::span<const Range> cfops;
  std::string_view primeiro;
  std::string_view segundo;
};
constexpr Range kDe2001Ate2002{200101, 200212};
constexpr Range kDesde2003{200301, kSemFim};
constexpr std::array kRelacoesDipam{
    RelacaoDipam{"CR10-52", kDe2001Ate2002, &Cfop::l3, kTransporteAte2002,
                 "Tabela 8, CR=30, Campos - Q30 ou CFOP Inconsistentes",
                 "Posições 122 ou 03 respectivamente (Transportes: Ref <= 200212)"},
    RelacaoDipam{"CR10-53", kDe2001Ate2002, &Cfop::l3, kComunicacaoAte2002,
                 "Tabela 2, CR=05, Campo - Q30 ou CFOP Inconsistentes",
                 "Posições 122 ou 03 respectivamente (Comunicações: Ref <= 200212)"},
    RelacaoDipam{"CR10-54", kDe2001Ate2002, &Cfop::l3, kEnergiaAte2002,
                 "Tabela 2, CR=05, Campo - Q30 ou CFOP Inconsistentes",
                 "Posições 122 ou 03 respectivamente (Energia Elétrica: Ref <= 200212)"},
    RelacaoDipam{"CR10-55", kDesde2003, &Cfop::l4, kTransporte,
                 "Tabela 8, CR=30, Campos - Q30 ou CFOP Inconsistentes",
                 "Posições 122 ou 03 respectivamente (Transportes: Ref > 200212)"},
    RelacaoDipam{"CR10-56", kDesde2003, &Cfop::l4, kComunicacao,
                 "Tabela 2, CR=05, Campo - Q30 ou CFOP Inconsistentes",
                 "Posições 122 ou 03 respectivamente (Comunicações: Ref > 200212)"},
    RelacaoDipam{"CR10-57", kDesde2003, &Cfop::l4, kEnergia,
                 "Tabela 2, CR=05, Campo - Q30 ou CFOP Inconsistentes",
                 "Posições 122 ou 03 respectivamente (Energia Elétrica: Ref > 200212)"},
};

Verdict ValidarDipam(const Record<Cr10>& r, const Cfop& cfop, const Record<Cr05>& cabecalho) {
  if (cabecalho[Cr05::kRegTrib] == "04" || Val(cabecalho[Cr05::kQ30]) != 0) return Accepted;
  for (const RelacaoDipam& relacao : kRelacoesDipam) {
    if (!relacao.ref.Holds(cfop.ref) || !In(relacao.cfops, cfop.*relacao.caracteres)) continue;
    return Refuse(relacao.regra, r, C::kCFOP, relacao.primeiro, relacao.segundo);
  }
  return Accepted;
}

}  // namespace

Verdict ValidarCruzadoCR10(const Pass& pass, const Cfop& cfop) {
  const Record<Cr10>& r = pass.registros.RegistroCR10;
  const Record<Cr05>& cabecalho = pass.registros.RegistroDeclaracao;
  if (auto refused = ValidarCfopComQ14(r, cfop)) return refused;
  if (auto refused = ValidarImposto(pass, r)) return refused;
  if (auto refused = ValidarCfopComReferencia(r, cfop)) return refused;
  if (auto refused = ValidarImpostoRetido(r, cfop)) return refused;
  return ValidarDipam(r, cfop, cabecalho);
}

}  // namespace tremvik
