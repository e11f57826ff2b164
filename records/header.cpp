#include "records/header.h"

#include <array>
#include <string>

#include "checks/dates.h"
#include "checks/reasons.h"
#include "records/without_fields.h"
#include "runtime/display.h"
#include "runtime/int16.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace tremvik {
namespace {

using C = Cr05;

constexpr std::string_view kCnaeZero = "0000000";
constexpr std::string_view kChaveZero = "00000000000000000000000000000000";

Verdict ValidarContribuinte(const Record<Cr05>& r, Components& componentes) {
  if (LefRigNumChr(r[C::kCr])) {
    return Refuse("CR05-01", r, C::kCr, "Tabela 2, CR=05, Campo - CR", "Inconsistentes, Posição 1");
  }
  if (r[C::kCr] != "05") {
    return Refuse("CR05-02", r, C::kCr, "Tabela 2, CR=05, Campo - CR ou Q05",
                  "Inconsistentes, Posição 1 ou 27");
  }
  if (LefRigNumChr(r[C::kIE], true)) {
    return Refuse("CR05-03", r, C::kIE, "Tabela 2, CR=05, Campo - IE", "Inconsistente, Posição 3");
  }
  if (!componentes.documentos().ValidarIE(r[C::kIE])) {
    return Refuse("CR05-04", r, C::kIE, "Tabela 2, CR=05, Campo - IE", "Inválido, Posição 3")
        .Porque(razao::Digitos(kMascaraIE, componentes.documentos().IECerta(r[C::kIE])));
  }
  if (LefRigNumChr(r[C::kCNPJ])) {
    return Refuse("CR05-05", r, C::kCNPJ, "Tabela 2, CR=05, Campo - CNPJ", "Inconsistente, Posição 15");
  }
  if (!componentes.documentos().ValidarCNPJ(r[C::kCNPJ])) {
    return Refuse("CR05-06", r, C::kCNPJ, "Tabela 2, CR=05, Campo - CNPJ", "Inválido, Posição 15")
        .Porque(razao::Digitos(kMascaraCNPJ, componentes.documentos().CNPJCerto(r[C::kCNPJ])));
  }
  if (r[C::kCNAE] != kCnaeZero) {
    return Refuse("CR05-07", r, C::kCNAE, "CNAE " + Utf8(r[C::kCNAE]) + " Inconsistente.",
                  "Tabela 2, CR=05, Posição 29.");
  }
  return Accepted;
}

// A reference at or above "201201" is never below "200007", so the last refusal cannot fire; references
// before 200007 are accepted.
Verdict ValidarRegimeEReferencia(const Record<Cr05>& r) {
  constexpr Range kRegime4{200007, 200512};
  if (LefRigNumChr(r[C::kRegTrib])) {
    return Refuse("CR05-08", r, C::kRegTrib, "Tabela 2, CR=05, Campo - RegTrib", "Inválido, Posição 36");
  }
  if (Val(r[C::kRegTrib]) < 1 || Val(r[C::kRegTrib]) > 4) {
    return Refuse("CR05-09", r, C::kRegTrib, "Tabela 2, CR=05, Campo - RegTrib", "Inválido, Posição 36");
  }
  if (Val(r[C::kRegTrib]) == 4 && Val(r[C::kQ30]) != 0) {
    return Refuse("CR05-10", r, C::kQ30, "Tabela 2, CR=05, Campo - Q30", "Inválido, Posição 122");
  }
  if (Val(r[C::kRegTrib]) == 4 && !kRegime4.Holds(IntVal(r[C::kRef]))) {
    return Refuse("CR05-11", r, C::kRef, "Tabela 2, CR=05, Campo - Ref", "Inconsistente, Posição 38")
        .Porque(razao::Validade("RegTrib 04", kRegime4, IntVal(r[C::kRef])));
  }
  if (LefRigNumChr(r[C::kRef])) {
    return Refuse("CR05-12", r, C::kRef, "Tabela 2, CR=05, Campo - Ref", "Inconsistente, Posição 38");
  }
  if (ValidarData(r[C::kRef])) {
    return Refuse("CR05-13", r, C::kRef, "Tabela 2, CR=05 Campo - Ref", "Inválido, Posição 38");
  }
  if (r[C::kRef] < "201201") {
    if (r[C::kIE].starts_with('8')) {
      return Refuse("CR05-14", r, C::kRef, "Só é permitida a importação de referências a partir de 01/2012.")
          .Porque(razao::Validade("IE iniciada por 8", {201201, kSemFim}, IntVal(r[C::kRef])));
    }
  } else if (r[C::kRef] < "200007") {
    return Refuse("CR05-15", r, C::kRef, "Tabela 2, CR=05 Campo - Ref :", "Fora do período, Posição 38 ");
  }
  if (LefRigNumChr(r[C::kRefInicial])) {
    return Refuse("CR05-16", r, C::kRefInicial, "Tabela 2, CR=05, Campo - RefInicial",
                  "Inconsistente, Posição 44 ");
  }
  if (Val(r[C::kRefInicial]) > 0 && ValidarData(r[C::kRefInicial])) {
    return Refuse("CR05-17", r, C::kRefInicial, "Tabela 2, CR=05, Campo - RefInicial",
                  "Inválida, Posição 44");
  }
  return Accepted;
}

// The quantities and the separators are told with the column of the field before them.
Verdict ValidarDemaisCampos(const Record<Cr05>& r) {
  if (LefRigNumChr(r[C::kTipo]) || Val(r[C::kTipo]) > 3) {
    return Refuse("CR05-18", r, C::kTipo, "Tabela 2, CR=05, Campo - Tipo", "Inconsistente, Posição 50 ");
  }
  if (LefRigNumChr(r[C::kMovimento]) || Val(r[C::kMovimento]) > 1) {
    return Refuse("CR05-19", r, C::kMovimento, "Tabela 2, CR=05, Campo - Movimento",
                  "Inconsistente, Posição 52 ");
  }
  if (LefRigNumChr(r[C::kTransmitida]) || Val(r[C::kTransmitida]) > 1) {
    return Refuse("CR05-20", r, C::kTransmitida, "Tabela 2, CR=05, Campo - Transmitida",
                  "Inconsistente, Posição 53");
  }
  if (LefRigNumChr(r[C::kSaldoCredPeriodoAnt])) {
    return Refuse("CR05-21", r, C::kSaldoCredPeriodoAnt, "Tabela 2, CR=05, Campo - SaldoCredPeriodoAnt",
                  "Inconsistente, Posição 54");
  }
  if (LefRigNumChr(r[C::kSaldoCredPeriodoAntST])) {
    return Refuse("CR05-22", r, C::kSaldoCredPeriodoAntST, "Tabela 2, CR=05, Campo - SaldoCredPeriodoAntST",
                  "Inconsistente, Posição 69 ");
  }
  if (LefRigNumChr(r[C::kOrigemPreDig]) || Val(r[C::kOrigemPreDig]) > 1) {
    return Refuse("CR05-23", r, C::kOrigemPreDig, "Tabela 2, CR=05, Campo - OrigemPreDig",
                  "Inconstente, Posição 98");
  }
  if (LefRigNumChr(r[C::kICMSFixPer])) {
    return Refuse("CR05-24", r, C::kICMSFixPer, "Tabela 2, CR=05, Campo - ICMSFixPer",
                  "Inconsistente, Posição 99");
  }
  if (!ChaveHexaValida(r[C::kChaveInterna])) {
    return Refuse("CR05-25", r, C::kChaveInterna, "Tabela 2, CR=05, Campo - ChaveInterna",
                  "Inconsistente, Posição 114");
  }
  if (LefRigNumChr(r[C::kQ10])) {
    return Refuse("CR05-26", r, C::kQ10, "Tabela 2, CR=05, Campo - Q10 ", "Inconsistente, Posição 146");
  }
  if (LefRigNumChr(r[C::kQ20])) {
    return Refuse("CR05-27", r, C::kQ20, "Tabela 2, CR=05, Campo - Q20 ", "Inconsistente, Posição 150");
  }
  if (LefRigNumChr(r[C::kQ30])) {
    return Refuse("CR05-28", r, C::kQ30, "Tabela 2, CR=05, Campo - Q30 ", "Inconsistente, Posição 154");
  }
  if (LefRigNumChr(r[C::kQ31])) {
    return Refuse("CR05-29", r, C::kQ31, "Tabela 2, CR=05, Campo - Q31 ", "Inconsistente, Posição 158");
  }
  if (r[C::kSeparadores] != kCrLf) {
    return Refuse("CR05-30", r, C::kSeparadores, "Tabela 2, CR=05, Campo - Separadores ",
                  "Inconsistente, Posição 162 ");
  }
  return Accepted;
}

Verdict GuardarQuantidades(const Record<Cr05>& r, EstadoDeclaracao& declaracao) {
  declaracao.QtdeCR10 = ToInt16(r[C::kQ10]);
  declaracao.QtdeCR07 = ToInt16(r[C::kQ07]);
  declaracao.QtdeCR20 = ToInt16(r[C::kQ20]);
  if (Val(r[C::kQ30]) != 0 && r[C::kRef] < "200101") {
    return Refuse("CR05-31", r, C::kQ30, "Tabela 2, CR=05 Campo - Ref x Q30 :", "inconsistentes, Posição 38 ")
        .Porque(razao::Validade("Q30", {200101, kSemFim}, IntVal(r[C::kRef])));
  }
  declaracao.QtdeCR30 = ToInt16(r[C::kQ30]);
  if (Val(r[C::kQ31]) > 0 && r[C::kRef] < "200201") {
    return Refuse("CR05-32", r, C::kQ31,
                  "Tabela 2, CR=05 Campo - Ref x Q31 :", "inconsistentes, Posição 38_x_158 ")
        .Porque(razao::Validade("Q31", {200201, kSemFim}, IntVal(r[C::kRef])));
  }
  declaracao.QtdeCR31 = ToInt16(r[C::kQ31]);
  return Accepted;
}

// The references that may be the initial one: from the first month of the half-year on.
std::string JanelaDaRefInicial(std::string_view ref) {
  const bool primeiro_semestre = IntVal(Right(ref, 2)) <= 6;
  const int janeiro = IntVal(Left(ref, 4)) * 100 + 1;
  return "permitido: " + razao::Meses({primeiro_semestre ? janeiro : janeiro + 6, IntVal(ref)});
}

// A header's key as people read it.
std::string ChaveLegivel(std::string_view chave) {
  if (chave.empty()) return {};
  return Utf8(Mascara(kMascaraIE, Left(chave, 12))) + ", " + razao::Mes(Mid(chave, 13, 6));
}

// Only regime 2 carries an initial reference: in the reference's half-year and not after it.
Verdict ValidarRefInicial(const Record<Cr05>& r, int regime) {
  if (regime != 2) {
    if (Val(r[C::kRefInicial]) > 0) {
      return Refuse("CR05-34", r, C::kRefInicial, "Tabela 2, CR=05, Campo - RefInicial",
                    "Inválido, Posição 44");
    }
    return Accepted;
  }
  if (Left(r[C::kRefInicial], 4) != Left(r[C::kRef], 4)) {
    return Refuse("CR05-35", r, C::kRefInicial, "Tabela 2, CR=05, Campo - Ref/RefInicial",
                  "Inválido, Posição 38/44 ")
        .Porque(JanelaDaRefInicial(r[C::kRef]));
  }
  const int mes = IntVal(Right(r[C::kRef], 2));
  const int inicial = IntVal(Right(r[C::kRefInicial], 2));
  if (mes >= 1 && mes <= 6) {
    if (inicial > 6 || inicial > mes) {
      return Refuse("CR05-36", r, C::kRefInicial, "Tabela 2, CR=05, Campo - Ref/RefInicial",
                    "Inválido, Posição 38/44")
          .Porque(JanelaDaRefInicial(r[C::kRef]));
    }
  } else if (inicial < 7 || inicial > mes) {
    return Refuse("CR05-37", r, C::kRefInicial, "Tabela 2, CR=05, Campo - Ref/RefInicial",
                  "Inválido, Posição 38/44 ")
        .Porque(JanelaDaRefInicial(r[C::kRef]));
  }
  return Accepted;
}

}  // namespace

Verdict ValidarCR05(Pass& pass, EstadoCabecalhos& cabecalhos) {
  const Record<Cr05>& r = pass.registros.RegistroDeclaracao;
  if (auto refused = ValidarContribuinte(r, pass.componentes)) return refused;
  if (auto refused = ValidarRegimeEReferencia(r)) return refused;
  if (auto refused = ValidarDemaisCampos(r)) return refused;
  if (auto refused = GuardarQuantidades(r, pass.declaracao)) return refused;
  Increment(cabecalhos.ContCR05);
  return Accepted;
}

// The CNAE rules by period cannot fire, since the field check lets no CNAE but zeros pass.
Verdict ValidarCR05Cruzado(const Pass& pass, EstadoCabecalhos& cabecalhos) {
  const Record<Cr05>& r = pass.registros.RegistroDeclaracao;
  const int regime = IntVal(r[C::kRegTrib]);
  const ShortText chave = ShortText(r[C::kIE]).Append(r[C::kRef]);
  if (chave.view() <= cabecalhos.UltimaChaveIERef) {
    return Refuse("CR05-33", r, C::kIE, "Tabela 2, CR=05, Campo - IE_x_Ref",
                  "Duplicado ou fora de seqüência. Posição 3_x_18")
        .Porque(razao::Ordem(ChaveLegivel(cabecalhos.UltimaChaveIERef), ChaveLegivel(chave)));
  }
  if (auto refused = ValidarRefInicial(r, regime)) return refused;
  if (regime == 3 && Val(r[C::kRef]) >= 200308 && r[C::kCNAE] != kCnaeZero) {
    return Refuse("CR05-38", r, C::kCNAE,
                  "CNAE " + Utf8(r[C::kCNAE]) + " Inválido para RegTrib = 3 e Ref >= 200308",
                  "Tabela 2, CR=05, Posição 29");
  }
  if (regime == 3 && Val(r[C::kRef]) < 200308 && r[C::kCNAE] != kCnaeZero) {
    return Refuse("CR05-39", r, C::kCNAE, "CNAE " + Utf8(r[C::kCNAE]) + " Inválido para Ref < 200308",
                  "Tabela 2, CR=05, Posição 29");
  }
  if (regime != 2 && Val(r[C::kICMSFixPer]) > 0) {
    return Refuse("CR05-40", r, C::kICMSFixPer, "Tabela 2, CR=05, Campo - ICMSFixPer",
                  "Inválido, Posição 99 ");
  }
  if (regime == 2 && Val(r[C::kICMSFixPer]) == 0) {
    return Refuse("CR05-41", r, C::kICMSFixPer, "Tabela 2, CR=05, Campo - ICMSFixPer",
                  "Inválido, Posição 99 ");
  }
  if (Val(r[C::kOrigemPreDig]) == 1 && r[C::kChaveInterna] == kChaveZero) {
    return Refuse("CR05-42", r, C::kChaveInterna, "Tabela 2, CR=55, Campo - ChaveInterna",
                  "Inconsistente, Posição 71");
  }
  cabecalhos.UltimaChaveIERef = chave.view();
  return Accepted;
}

Verdict VerificarReferenciaExistente(const Pass& pass) {
  const Record<Cr05>& r = pass.registros.RegistroDeclaracao;
  const ShortText inicial = Val(r[C::kRefInicial]) != 0 ? DiaVinte(r[C::kRefInicial]) : ShortText();
  if (pass.componentes.consulta().Existe(Mascara(kMascaraIE, r[C::kIE]), "QZ", r[C::kRegTrib],
                                         DiaVinte(r[C::kRef]), inicial)) {
    return Refuse("CR05-43", r, C::kRef, "Tabela 2, CR=05, Campo -  Ref",
                  "Esta Referência já existente, Posição 3.");
  }
  return Accepted;
}

void GravarCR05(const Pass& pass) {
  const Record<Cr05>& r = pass.registros.RegistroDeclaracao;
  Gravador& gravador = pass.componentes.gravador(Kind::kCr05);
  if (!gravador.LeCampos()) {
    constexpr std::array kValores{C::kSaldoCredPeriodoAnt, C::kSaldoCredPeriodoAntST, C::kICMSFixPer};
    return GravarSemCampos<C>(r, kValores, gravador);
  }
  Utf8Buffer buffer;
  const auto texto = [&](const Field<Cr05>& field) { gravador.Campo(field.name, Utf8(r[field], buffer)); };
  const auto valor = [&](const Field<Cr05>& field) { gravador.Campo(field.name, FomataValor(r[field])); };
  gravador.Campo(C::kIE.name, Mascara(kMascaraIE, r[C::kIE]));
  gravador.Campo(C::kCNPJ.name, Mascara(kMascaraCNPJ, r[C::kCNPJ]));
  for (const auto& field :
       {C::kCNAE, C::kRegTrib, C::kRef, C::kRefInicial, C::kTipo, C::kMovimento, C::kTransmitida}) {
    texto(field);
  }
  valor(C::kSaldoCredPeriodoAnt);
  valor(C::kSaldoCredPeriodoAntST);
  texto(C::kSemRegra);
  texto(C::kOrigemPreDig);
  valor(C::kICMSFixPer);
  for (const auto& field : {C::kChaveInterna, C::kQ07, C::kQ10, C::kQ20, C::kQ30, C::kQ31})
    texto(field);
  gravador.Gravar();
}

}  // namespace tremvik
