// CFOP details: fields, validity by period, values against each other.
#include <gtest/gtest.h>

#include "checks/reference_tables.h"
#include "records/cfop_validity.h"
#include "tests/support/cases.h"

namespace tremvik::test {
namespace {

// `text` with the value in place of each "%".
std::string Filled(std::string_view text, std::string_view value) {
  std::string filled(text);
  for (auto i = filled.find('%'); i != std::string::npos; i = filled.find('%'))
    filled.replace(i, 1, value);
  return filled;
}

struct Codes {
  std::string_view ref, edits, good, bad;
  std::string_view first, second = {};
};

// Each code in `good` is accepted and each in `bad` refused, in a declaration of the period with the records
// that the code needs. "%" in a text stands for the code.
void CheckCodes(const Codes& codes) {
  const bool dipam = codes.ref >= "200101" && codes.edits.find("RegTrib=04") == std::string_view::npos;
  const auto check = [&](std::string_view code, bool refused) {
    const bool interstate = code.starts_with('2') || code.starts_with('6');
    const std::string kinds = std::string("05 10") + (interstate ? " 14" : "") + (dipam ? " 30" : "");
    const std::string six = std::string(code) + std::string(6 - code.size(), '0');
    const std::string edits =
        std::string(codes.edits) + "; 05.Ref=" + std::string(codes.ref) + "; 10.CFOP=" + six;
    SCOPED_TRACE(edits);
    Check({kinds, edits, refused ? 3 : kAccepted, Filled(codes.first, six), Filled(codes.second, six)});
  };
  for (const std::string_view code : Split(codes.good, ' '))
    check(code, false);
  for (const std::string_view code : Split(codes.bad, ' '))
    check(code, true);
}

TEST(Cfop, SequenceAndFields) {
  constexpr std::string_view kSequence = "duplicado ou fora de seqüência, posição 3";
  constexpr Case kCases[] = {
      {"05 10*2", "10#2.CFOP=110100", 4, "Tabela 3, CR=10 Campo - CFOP", kSequence},
      {"05 10*2", "10#2.CFOP=110000", 4, "Tabela 3, CR=10 Campo - CFOP", kSequence},
      {"05 10", "10.CFOP=000000", 3, "Tabela 3, CR=10 Campo - CFOP", kSequence},
      {"05 10 05 10", ""},  // a new declaration begins anew
      {"05 10", "05.RegTrib=04; 05.Ref=200401; 10.CFOP=140100"},
      {"05 10 14", "05.RegTrib=04; 05.Ref=200401", 3, "Tabela 3, CR=10, Campo - Q14",
       "Inconsistente, Posição 144 (Regime = 04)"},
      {"05 10", "10.CFOP=610100", 3, "Tabela 3, CR=10, Campo - CFOP_x_Q14", "Inválido, Posição 3_x_114 (A)"},
      {"05 10", "10.CFOP=210100", 3, "Tabela 3, CR=10, Campo - CFOP_x_Q14", "Inválido, Posição 3_x_114 (A)"},
      {"05 10 14", "10.CFOP=110100", 3, "Tabela 03, CR=10, Campo - CFOP_x_Q14",
       "Inconsistente, Posição 3_x_114 (B)"},
      {"05 10 14", "10.CFOP=710100", 3, "Tabela 03, CR=10, Campo - CFOP_x_Q14",
       "Inconsistente, Posição 3_x_114 (B)"},
  };
  CheckAll(kCases);
  constexpr Limit kLimits[] = {{"05 10", "10.ImpostoRetidoST=1", "200112", "200201", 3,
                                "Tabela 3, CR=10, Campo - ImpostoRetidoST", "Inconsistente, Posição 84"}};
  CheckAll(kLimits);
}

TEST(Cfop, ValidityByPeriod) {
  constexpr std::string_view kHeading99 =
      "Tabela 3, CR=10, Campo - CFOP Inconsistente, Posição 3 (2º Caso): 1.99";
  constexpr std::string_view kTable = "Tabela 3, CR=10, Posição 3:";
  constexpr std::string_view kNotFound =
      "Campo CFOP Inválido (CFOP de Grupo ou não localizado na tabela para a referência informada): %";
  constexpr std::string_view k2003 =
      "Tabela 3, CR=10, Posição 3 - Campo CFOP Inválido para Ref > 200212 CFOP = %";
  constexpr std::string_view kGroup = "Tabela 3, CR=10, Posição 3 - Campo CFOP Inválido (CFOP de Grupo): %";
  constexpr std::string_view k1605 = "Tabela 3, CR=10, Posição 3 - Campo CFOP Inválido para Ref > 200412 %";
  constexpr std::string_view k1605Second =
      "CFOP de grupo ou não localizado na tabela para a referência informada";
  constexpr Codes kRows[] = {
      {"200012", "", "199", "", ""},
      {"200101", "", "1991 198", "199", kHeading99},
      {"200212", "", "1991", "199", kHeading99},
      {"200301", "", "199", "", ""},
      {"200212", "", "", "9999", kTable, kNotFound},
      {"201203", "", "", "9999", kTable, kNotFound},
      {"200212", "", "1602 5602 5927", "", ""},
      {"200301", "", "1603 5603 5928", "1602 5602 5927", k2003},
      {"200012", "", "184 186", "185 285 585 685", kGroup},
      {"201203", "", "", "1850 2859 5850 6851", kGroup},
      {"200012", "", "", "1605 5605", k1605, k1605Second},
      {"201203", "", "1604 5604", "1605 5605", k1605, k1605Second},
      {"200501", "", "", "5606", "Tabela 3, CR=10, Posição 3 - Campo CFOP Inválido: %"},
      {"200512", "", "5607", "5606", "Tabela 3, CR=10, Posição 3 - Campo CFOP Inválido: %"},
      {"200601", "", "", "5606",
       "Tabela 3, CR=10, Posição 3 - Este CFOP está desabilitado no Programa da Orvel. CFOP: %"},
      {"200712", "", "1359", "1360", kTable, kNotFound},
      {"200801", "", "1360", "", ""},
  };
  for (const Codes& row : kRows)
    CheckCodes(row);
}

TEST(Cfop, CodesOfRegime4) {
  constexpr std::string_view kOld =
      "Tabela 3, CR=10, Campo - CFOP Inválido, Posição 3 (Reg. Trib. = 4, Ref <= 200212): %";
  constexpr std::string_view kNew =
      "Tabela 3, CR=10, Campo - CFOP Inválido, Posição 3 (Reg. Trib. = 4, Ref > 200312): %";
  constexpr std::string_view k200301 =
      "Tabela 3, CR=10, Campo - CFOP Inválido, Posição 3 (Reg. Trib. = 4, Ref > 200301 ): %";
  constexpr std::string_view k200312 =
      "Tabela 3, CR=10, Campo - CFOP Inválido, Posição 3 (Reg. Trib. = 4, Ref > 200312 ): %";
  constexpr Codes kRows[] = {
      {"200212", "05.RegTrib=04", "171 179 571 196 1991 5991", "112 169 181 195 197 596 1401", kOld},
      {"200301", "05.RegTrib=04", "1401 1449 5401 5449 1900 1999 5900", "1400 1450 5400 5450 1651 3900",
       k200301},
      {"200312", "05.RegTrib=04", "1401", "5651", k200312},
      {"200401", "05.RegTrib=04", "1401 1901 1651 1699 5651 5699", "1650 1700 5650 5700 5102", kNew},
      {"200401", "05.RegTrib=04", "", "1360", kNew},
  };
  for (const Codes& row : kRows)
    CheckCodes(row);
}

TEST(Cfop, CodesYoungerThanThePeriod) {
  constexpr std::string_view kFirst = "Tabela 03, CR=10, Campo - CFOP_x_Referencia";
  constexpr std::string_view kSecond = "Inconsistente ";
  constexpr std::string_view kTable = "Tabela 3, CR=10, Posição 3:";
  constexpr std::string_view kNotFound =
      "Campo CFOP Inválido (CFOP de Grupo ou não localizado na tabela para a referência informada): %";
  constexpr std::string_view k5109 =
      "Tabela 3, CR=10, Posição 3 - Campo CFOP Inválido para Ref > 200212 - CFOP = %";
  constexpr Codes kRows[] = {
      {"200606", "", "1504 5503", "1505 1506 2505 2506 5504 5505 6504 6505", kFirst, kSecond},
      {"200607", "", "1505 1506 2505 2506 5504 5505 6504 6505", "", ""},
      {"200804", "", "", "6360", kFirst, kSecond},
      {"200805", "", "6360", "", ""},
      {"200906", "", "", "5667 6667 7667", kFirst, kSecond},
      {"200907", "", "5667 6667 7667", "", ""},
      {"201006", "", "", "1934 2934 5934 6934", kFirst, kSecond},
      {"201007", "", "1934 2934 5934 6934", "", ""},
      {"201012", "", "", "1128 2128 3128", kFirst, kSecond},
      {"201101", "", "1128 2128 3128", "", ""},
      {"200212", "", "5109 5110", "", ""},
      {"200301", "", "5108 5111", "5109 5110", k5109},
      {"200712", "", "", "5360", kTable, kNotFound},
      {"200801", "", "5360", "", ""},
      {"200412", "", "", "1930 2930 5359 5933 6359 6933", kTable, kNotFound},
      {"200501", "", "1930 2930 5359 5933 6359 6933", "", ""},
  };
  for (const Codes& row : kRows)
    CheckCodes(row);
}

TEST(Cfop, TaxWithheldByCodeAndPeriod) {
  constexpr std::string_view kFirst =
      "Tabela 03, CR=10, Campo - CFOP_x_ImpRetSubstitutoST_x_ImpRetSubstituÍdo";
  constexpr std::string_view k2002 = "Inconsistente, Posição 3_x_99_x_114 (ImpRetSubstituido: Ref <= 200212)";
  constexpr std::string_view k2003 = "Inconsistente, Posição 3_x_99_x_114 (ImpRetSubstituido: Ref > 200212)";
  constexpr std::string_view k2004 =
      "Inconsistente, Posição 3_x_99_x_114 (ImpRetSubstituido: Ref > 200312 e Ref <= 200712)";
  constexpr std::string_view k2008 = "Inconsistente, Posição 3_x_99_x_114 (ImpRetSubstituido: Ref > 200712)";
  constexpr std::string_view k200805 =
      "Inconsistente, Posição 3_x_99_x_114 (ImpRetSubstituido: Ref > 200805)";
  constexpr std::string_view kST = "10.ImpRetSubstitutoST=1";
  constexpr Codes kRows[] = {
      {"200112", kST, "", "170 510", "Tabela 03, CR=10, Campo - ImpRetSubstitutoST_x_ImpRetSubstituÍdo",
       "Inconsistente, Posição 99_x_114"},
      {"200112", "10.ImpRetSubstituÍdo=1", "", "170",
       "Tabela 03, CR=10, Campo - ImpRetSubstitutoST_x_ImpRetSubstituÍdo", "Inconsistente, Posição 99_x_114"},
      {"200201", kST, "170 180 270 280 570 580 670 680 196 296 597 697",
       "171 179 281 297 569 596 598 698 1401", kFirst, k2002},
      {"200212", "10.ImpRetSubstituÍdo=1", "1701", "510", kFirst, k2002},
      {"200301", kST, "1401 1449 2401 2449 5401 5449 6401 6449 1900 1999 2900 2999 5900 5999 6900 6999",
       "1400 1450 2400 2450 5400 5450 6400 6450 1899 2000 3900 1651", kFirst, k2003},
      {"200312", "10.ImpRetSubstituÍdo=1", "5405", "5651 5102", kFirst, k2003},
      {"200401", kST, "5405 1900 1651 1699 2651 2699 5651 5699 6651 6699",
       "1650 1700 2650 2700 5102 5650 5700 6650 6700", kFirst, k2004},
      {"200712", kST, "1651", "5102", kFirst, k2004},
      {"200801", kST, "5401 1651 1900 1360 5360", "5102 1361 5361", kFirst, k2008},
      {"200804", kST, "1360", "5102 6361", kFirst, k2008},
      {"200805", kST, "5401 1651 1900 1360 5360 6360", "5102 6361", kFirst, k200805},
      {"201203", "", "5102", "", ""},
  };
  for (const Codes& row : kRows)
    CheckCodes(row);
}

TEST(Cfop, OperationsThatNeedDipamValues) {
  struct Family {
    std::string_view ref, need, free, first, second;
  };
  constexpr std::string_view k8 = "Tabela 8, CR=30, Campos - Q30 ou CFOP Inconsistentes";
  constexpr std::string_view k2 = "Tabela 2, CR=05, Campo - Q30 ou CFOP Inconsistentes";
  constexpr Family kFamilies[] = {
      {"200012", "", "561 551 541", "", ""},
      {"200101", "561 562 563 661 662 663 761", "560 564 660 664 760 762", k8,
       "Posições 122 ou 03 respectivamente (Transportes: Ref <= 200212)"},
      {"200212", "561", "", k8, "Posições 122 ou 03 respectivamente (Transportes: Ref <= 200212)"},
      {"200101", "551 552 553", "550 554 651", k2,
       "Posições 122 ou 03 respectivamente (Comunicações: Ref <= 200212)"},
      {"200212", "541 546 641 646", "540 547 640 647 741", k2,
       "Posições 122 ou 03 respectivamente (Energia Elétrica: Ref <= 200212)"},
      {"200301", "5351 5399 6351 6399 7351 7399", "5400 6400 7350 7400", k8,
       "Posições 122 ou 03 respectivamente (Transportes: Ref > 200212)"},
      {"201203", "5301 5349 6301 6349 7301 7349", "5350 6350 7300", k2,
       "Posições 122 ou 03 respectivamente (Comunicações: Ref > 200212)"},
      {"201203", "5251 5299 6251 6299 7251 7299", "5250 5300 6250 6300 7250", k2,
       "Posições 122 ou 03 respectivamente (Energia Elétrica: Ref > 200212)"},
  };
  const auto check = [](std::string_view code, const Family& family, bool refused) {
    const bool interstate = code.starts_with('6');
    const std::string edits = "05.Ref=" + std::string(family.ref) + "; 10.CFOP=" + std::string(code) +
                              std::string(6 - code.size(), '0');
    SCOPED_TRACE(edits);
    Check({interstate ? "05 10 14" : "05 10", edits, refused ? 3 : kAccepted, family.first, family.second});
    if (refused) Check({interstate ? "05 10 14 30" : "05 10 30", edits});
  };
  for (const Family& family : kFamilies) {
    for (const std::string_view code : Split(family.need, ' '))
      check(code, family, true);
    for (const std::string_view code : Split(family.free, ' '))
      check(code, family, false);
  }
}

struct Tax {
  std::string_view base, tax;
  bool asks;
};
constexpr Tax kTaxes[] = {
    {"0", "0", false},          {"0", "1", false},         {"100000", "1", false},
    {"100000", "25000", false}, {"100000", "25001", true}, {"100002", "25001", false},  // 25000,5 goes up
    {"100002", "25002", true},  {"100001", "25001", true},                              // 25000,25 goes down
    {"1", "1", true},           {"2", "1", false},         {"999999999999999", "250000000000000", false},
};

TEST(Cfop, TaxAgainstBase) {
  constexpr Case kStop[] = {{"05 10", "10.BaseCálculo=100000", 3, "Tabela 03, CR=10, Campo - Imposto",
                             "Inconsistente, Posição 39."}};
  CheckAll(kStop);
  for (const auto& [base, tax, asks] : kTaxes) {
    SCOPED_TRACE(std::string(base) + " " + std::string(tax));
    FileBuilder file("05 10 31");
    file.With("10.BaseCálculo", base).With("10.Imposto", tax);
    for (const int answer : {6, 7}) {
      Instance run;
      run.host.answers = {answer};
      run.Import(file.Bytes());
      ASSERT_EQ(run.host.boxes.size(), asks && answer == 6 ? 2U : 1U);
      EXPECT_EQ(run.Succeeded(), !asks || answer == 6);
      EXPECT_EQ(run.tremvik.bolRetMonitora(), asks && answer == 7);
      EXPECT_EQ(run.host.boxes.front().style, asks ? 324 : 64);
    }
  }
}

TEST(Cfop, TheQuestionAndItsAnswers) {
  const std::string question =
      "Sr(a) usuário(a), entre em contato com a empresa\r\n"
      "responsável pela geração do arquivo Pré-Formatado\r\n"
      "e informe a mensagem abaixo : \r\n\r\n"
      "Tabela 03, CR=10, Campo - Imposto\r\nInconsistente, Posição 39, Linha nº 4\r\nDeseja continuar Sim/Não ? ";
  FileBuilder file("05 10*2 31");
  file.Edit("10#2.BaseCálculo=100; 10#2.Imposto=26");
  Instance no;
  no.host.answers = {7};
  no.Import(file.Bytes());
  ASSERT_EQ(no.host.boxes.size(), 1U);
  EXPECT_EQ(no.host.boxes.front().text, question);
  EXPECT_EQ(no.host.boxes.front().title, "Atenção");
  EXPECT_EQ(no.tremvik.Mensagem(), question);
  EXPECT_EQ(no.tremvik.NroLinha(), 4);
  const std::vector<std::string> closing = {"Dúvida 4 10.Imposto", "Caixa", "Close 1", "Ponteiro 0"};
  EXPECT_EQ(std::vector<std::string>(no.host.log.end() - 4, no.host.log.end()), closing);

  Instance yes;  // and the checks go on with the next one
  yes.host.answers = {6};
  yes.Import(file.With("10#2.CFOP", "510900").Bytes());
  ASSERT_EQ(yes.host.boxes.size(), 2U);
  EXPECT_EQ(
      yes.host.boxes.back().text,
      Report("Tabela 3, CR=10, Posição 3 - Campo CFOP Inválido para Ref > 200212 - CFOP = 510900", "", 4));
}

TEST(Cfop, LookUpsOfTheTables) {
  struct Query {
    std::string_view ref, code, form, known, description;  // the ends of the two queries
  };
  constexpr Query kQueries[] = {
      {"200212", "112000", "1.12", " = '1' AND GRUPO = 0", "='1')"},
      {"200212", "112100", "1.12.1", " = '1' AND GRUPO = 0", "='1')"},
      {"200301", "110200", "1.102", " = '2' AND GRUPO = 0", "='2')"},
      {"200312", "110200", "1.102", " = '2' AND GRUPO = 0", "='2')"},
      {"200401", "110200", "1.102", " > '1' AND GRUPO = 0", "> '1')"},
      {"200212", "100000", "1.00", " = '1' AND GRUPO = 0", ""},  // too short a code has no description
  };
  constexpr std::string_view kDescription =
      "SELECT tblQuadroCFOPs.Descrição FROM tblQuadroCFOPs WHERE ((tblQuadroCFOPs.[Grupo 15]='%') OR "
      "(tblQuadroCFOPs.[Grupo 26]='%') OR (tblQuadroCFOPs.[Grupo 37]='%')) AND (tblQuadroCFOPs.Conjunto";
  for (const auto& [ref, code, form, known, description] : kQueries) {
    SCOPED_TRACE(code);
    std::vector<std::string> expected = {
        Filled("SELECT CFOP FROM tblTodosCFOPs WHERE CFOP = '%' and Conjunto", form).append(known)};
    if (!description.empty()) expected.push_back(Filled(kDescription, form).append(description));
    Instance run;
    run.Import(FileBuilder("05 10").With("05.Ref", ref).With("10.CFOP", code).Bytes());
    EXPECT_TRUE(run.Succeeded());
    EXPECT_EQ(run.host.queries, expected);
  }
}

TEST(Cfop, DisplayForms) {
  constexpr std::string_view kForms[][3] = {
      {"200301", "1102", "1.102"},  {"200301", "112", "0.112"}, {"200212", "112", "1.12"},
      {"200212", "1121", "1.12.1"}, {"200212", "1.12", "1.12"}, {"200212", "1.12.1", "1.12.1"},
      {"200212", "12", ""},         {"200212", "11211", ""},    {"200212", "", ""},
  };
  for (const auto& [ref, code, form] : kForms)
    EXPECT_EQ(FormatarCFOP(ref, code).view(), form) << code;
}

TEST(ReferenceTables, QueryOfEachKindAndMode) {
  constexpr std::string_view kLookUps[][4] = {
      {"05", "6201500", "", "Select CNAE From tblCNAEsRegimeDispensado Where CNAE = '6201500'"},
      {"10", "1.102", "", "Select CFOP From tblTodosCFOPs Where CFOP = '1.102'"},
      {"10", "1.102", "1",
       "SELECT CFOP FROM tblTodosCFOPs WHERE CFOP = '1.102' and Conjunto = '1' AND GRUPO = 0"},
      {"10", "1.102", "2",
       "SELECT CFOP FROM tblTodosCFOPs WHERE CFOP = '1.102' and Conjunto = '2' AND GRUPO = 0"},
      {"10", "1.102", "3",
       "SELECT CFOP FROM tblTodosCFOPs WHERE CFOP = '1.102' and Conjunto > '1' AND GRUPO = 0"},
      {"14", "35", "", "Select Código From tblEstados Where Código = '35'"},
      {"18", "1302603", "", "Select CódMunicípio From tblMunicípiosZFM_ALC Where CódMunicípio = '1302603'"},
      {"20", "002.23", "0",
       "Select CódSubItem From tblQuadroOcorrências Where CódSubItem = '002.23' and OpPróprias"},
      {"20", "002.23", "1",
       "Select CódSubItem From tblQuadroOcorrências Where CódSubItem = '002.23' and NOT OpPróprias"},
      {"30", "1.1", "", "Select código From tblcódigosdipam Where código = '1.1'"},
      {"30", "1234", "", "Select Códmunicípio From tblmunicípios Where Códmunicípio = '1234'"},
  };
  RecordingHost host;
  TabelasFixas tables(host, host);
  for (const auto& [kind, value, mode, sql] : kLookUps) {
    EXPECT_FALSE(tables.NaoExisteEmFixas(kind, value, mode));
    EXPECT_EQ(host.queries.back(), sql);
  }
  EXPECT_TRUE(tables.NaoExisteEmFixas("20", "999.98", "0"));
  EXPECT_EQ(host.open_databases, 0);
  host.Fail("OpenRecordset", 3075);
  EXPECT_THROW((void)tables.NaoExisteEmFixas("14", "3'5", ""), RuntimeError);
  EXPECT_EQ(host.open_databases, 0);
}

}  // namespace
}  // namespace tremvik::test
