#include "records/cfop_validity.h"

#include <algorithm>
#include <array>
#include <string>

#include "checks/period.h"
#include "checks/reasons.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace tremvik {
namespace {

using C = Cr10;

ShortText Exibicao(std::string_view codigo, int ref) {
  ShortText texto = Left(codigo, 1);
  if (ref > 200212) return texto.Append('.').Append(Mid(codigo, 2, 3));
  texto.Append('.').Append(Mid(codigo, 2, 2));
  if (Mid(codigo, 4, 1) != "0") texto.Append('.').Append(Mid(codigo, 4, 1));
  return texto;
}

// The digits of `codigo` laid from the right into the places of `pattern`, zeros where they end before;
// digits left over stand in front.
ShortText Formatar(std::string_view pattern, std::string_view codigo) {
  ShortText digits;
  for (const char c : codigo) {
    if (IsDigit(c)) digits.Append(c);
  }
  const auto places = static_cast<std::size_t>(std::ranges::count(pattern, '0'));
  ShortText padded;
  for (std::size_t i = digits.view().size(); i < places; ++i)
    padded.Append('0');
  padded.Append(digits);
  std::string_view rest = padded;
  ShortText texto = rest.substr(0, rest.size() - places);
  rest.remove_prefix(rest.size() - places);
  for (const char c : pattern) {
    texto.Append(c == '0' ? rest.front() : c);
    if (c == '0') rest.remove_prefix(1);
  }
  return texto;
}

// The periods of the table set of `ref`.
Range PeriodoDoConjunto(int ref) {
  constexpr std::array kPeriodos{Range{0, 200212}, Range{200301, 200312}, Range{200401, kSemFim}};
  return *std::ranges::find(kPeriodos, Conjunto(ref), [](Range periodo) { return Conjunto(periodo.last); });
}

}  // namespace

Cfop::Cfop(const Record<Cr10>& detalhe, const Record<Cr05>& cabecalho)
    : codigo(detalhe[C::kCFOP]),
      ref_texto(cabecalho[Cr05::kRef]),
      ref(IntVal(ref_texto)),
      l1(IntVal(Left(codigo, 1))),
      l2(IntVal(Left(codigo, 2))),
      l3(IntVal(Left(codigo, 3))),
      l4(IntVal(Left(codigo, 4))),
      exibicao(Exibicao(codigo, ref)) {}

std::string ComCodigo(std::string_view texto, const Cfop& cfop) {
  return std::string(texto) + Utf8(cfop.codigo);
}

std::string ValidadeDoCfop(const Cfop& cfop, Range periodo) {
  return razao::Validade("CFOP " + Utf8(cfop.exibicao), periodo, cfop.ref);
}

Refusal ForaDaTabela(RuleCode regra, const Record<Cr10>& r, const Cfop& cfop) {
  return Refuse(
      regra, r, C::kCFOP, "Tabela 3, CR=10, Posição 3:",
      ComCodigo(
          "Campo CFOP Inválido (CFOP de Grupo ou não localizado na tabela para a referência informada): ",
          cfop));
}

std::string_view Conjunto(int ref) {
  if (ref <= 200212) return "1";
  return ref <= 200312 ? "2" : "3";
}

ShortText FormatarCFOP(std::string_view ref, std::string_view codigo) {
  if (ref > "200212") return Formatar("0.000", codigo);
  const auto points = std::ranges::count(codigo, '.');
  if (points == 1) return Formatar("0.00", codigo);
  if (points == 2 || codigo.size() == 4) return Formatar("0.00.0", codigo);
  if (codigo.size() == 3) return Formatar("0.00", codigo);
  return {};
}

std::string_view DescricaoCFOP(TabelasFixas& fixas, std::string_view ref, std::string_view codigo,
                               std::string_view conjunto) {
  const ShortText f = FormatarCFOP(ref, codigo);
  if (ref <= "200212" && (f.view().empty() || f.view().ends_with('0'))) return {};
  const bool posterior = conjunto > "2";
  return fixas.PrimeiroTexto(
      {"SELECT tblQuadroCFOPs.Descrição FROM tblQuadroCFOPs WHERE ((tblQuadroCFOPs.[Grupo 15]='", f,
       "') OR (tblQuadroCFOPs.[Grupo 26]='", f, "') OR (tblQuadroCFOPs.[Grupo 37]='", f,
       "')) AND (tblQuadroCFOPs.Conjunto", posterior ? "> '1')" : "='", posterior ? "" : conjunto,
       posterior ? "" : "')"},
      "Descrição");
}

Verdict ValidarCfopNaTabela(const Record<Cr10>& r, const Cfop& cfop, TabelasFixas& fixas) {
  constexpr Range kTitulos99{200101, 200212};  // x.99 is a heading with sub-items
  if (kTitulos99.Holds(cfop.ref) && Mid(cfop.codigo, 2, 2) == "99" && Mid(cfop.codigo, 4, 1) == "0") {
    return Refuse("CR10-08", r, C::kCFOP,
                  std::string("Tabela 3, CR=10, Campo - CFOP Inconsistente, Posição 3 (2º Caso): ")
                      .append(cfop.exibicao))
        .Porque(razao::Meses(kTitulos99) + " valem só as divisões deste CFOP");
  }
  if (fixas.NaoExisteEmFixas(Kind::kCr10, cfop.exibicao, Conjunto(cfop.ref))) {
    return ForaDaTabela("CR10-09", r, cfop)
        .Porque("a tabela de CFOPs (" + razao::Meses(PeriodoDoConjunto(cfop.ref)) + ") não tem " +
                Utf8(cfop.exibicao));
  }
  return Accepted;
}

// The codes 1605 and 5605 are refused in every period, although the text names 200412.
Verdict ValidarCfopDoPeriodo(const Record<Cr10>& r, const Cfop& cfop) {
  constexpr std::array kSem2003{1602, 5602, 5927};
  constexpr std::array kGrupos{185, 285, 585, 685};
  constexpr const char* kSempre = "recusado em qualquer referência";
  if (cfop.ref > 200212 && In(kSem2003, cfop.l4)) {
    return Refuse(
               "CR10-22", r, C::kCFOP,
               ComCodigo("Tabela 3, CR=10, Posição 3 - Campo CFOP Inválido para Ref > 200212 CFOP = ", cfop))
        .Porque(ValidadeDoCfop(cfop, {0, 200212}));
  }
  if (In(kGrupos, cfop.l3)) {
    return Refuse("CR10-23", r, C::kCFOP,
                  ComCodigo("Tabela 3, CR=10, Posição 3 - Campo CFOP Inválido (CFOP de Grupo): ", cfop));
  }
  if (cfop.l4 == 1605 || cfop.l4 == 5605) {
    return Refuse("CR10-24", r, C::kCFOP,
                  ComCodigo("Tabela 3, CR=10, Posição 3 - Campo CFOP Inválido para Ref > 200412 ", cfop),
                  "CFOP de grupo ou não localizado na tabela para a referência informada")
        .Porque(kSempre);
  }
  if (cfop.l4 == 5606 && cfop.ref > 200512) {
    return Refuse("CR10-25", r, C::kCFOP,
                  ComCodigo(
                      "Tabela 3, CR=10, Posição 3 - Este CFOP está desabilitado no Programa da Orvel. CFOP: ",
                      cfop))
        .Porque(kSempre);
  }
  if (cfop.l4 == 5606) {
    return Refuse("CR10-26", r, C::kCFOP,
                  ComCodigo("Tabela 3, CR=10, Posição 3 - Campo CFOP Inválido: ", cfop))
        .Porque(kSempre);
  }
  return Accepted;
}

Verdict ValidarCfopDoRegime4(const Record<Cr10>& r, const Cfop& cfop) {
  constexpr std::array kSubstituicao{Range{1401, 1449}, Range{5401, 5449}};
  constexpr std::array kCombustiveis{Range{1651, 1699}, Range{5651, 5699}};
  if (cfop.ref <= 200212) {
    if (cfop.l2 == 17 || cfop.l2 == 57 || cfop.l3 == 196 || Mid(cfop.codigo, 2, 2) == "99") return Accepted;
    return Refuse(
        "CR10-28", r, C::kCFOP,
        ComCodigo("Tabela 3, CR=10, Campo - CFOP Inválido, Posição 3 (Reg. Trib. = 4, Ref <= 200212): ",
                  cfop));
  }
  if (In(kSubstituicao, cfop.l4) || cfop.l2 == 19 || cfop.l2 == 59) return Accepted;
  if (cfop.ref > 200312) {
    if (In(kCombustiveis, cfop.l4)) return Accepted;
    return Refuse(
        "CR10-29", r, C::kCFOP,
        ComCodigo("Tabela 3, CR=10, Campo - CFOP Inválido, Posição 3 (Reg. Trib. = 4, Ref > 200312): ",
                  cfop));
  }
  return Refuse("CR10-30", r, C::kCFOP,
                "Tabela 3, CR=10, Campo - CFOP Inválido, Posição 3 (Reg. Trib. = 4, Ref > " +
                    ComCodigo(Utf8(cfop.ref_texto) + " ): ", cfop));
}

Verdict ValidarCfop1360(const Record<Cr10>& r, const Cfop& cfop) {
  if (cfop.ref < 200801 && cfop.l4 == 1360)
    return ForaDaTabela("CR10-31", r, cfop).Porque(ValidadeDoCfop(cfop, {200801, kSemFim}));
  return Accepted;
}

}  // namespace tremvik
