// Occurrences: fields, periods, quantities, sums.
#include <gtest/gtest.h>

#include "tests/support/cases.h"

namespace tremvik::test {
namespace {

constexpr std::string_view kSubItem = "Tabela 06, CR=20, Campo - CódSubitem";
constexpr std::string_view kPeriod = "inconsistente para esta referencia, Posição 3";
constexpr std::string_view kContributor = "inconsistente para este Contribuinte, Posição 3";

TEST(Occurrence, SubItemsByPeriod) {
  constexpr Limit kLimits[] = {
      {"05 20", "20.CódSubItem=00201", "201004", "201005", 3, kSubItem, kPeriod},
      {"05 20", "20.CódSubItem=00203", "201004", "201005", 3, kSubItem, kPeriod},
      {"05 20", "20.CódSubItem=00204", "201004", "201005", 3, kSubItem, kPeriod},
      {"05 20 27", "20.CódSubItem=00702; 20.PrópriaOuST=0; 27.NF=0", "201004", "201005", 3, kSubItem,
       kPeriod},
      {"05 20", "20.CódSubItem=00703", "201004", "201005", 3, kSubItem, kPeriod},
      {"05 20 25", "20.CódSubItem=00704", "201004", "201005", 3, kSubItem, kPeriod},
      {"05 20 25", "20.CódSubItem=00705", "201004", "201005", 3, kSubItem, kPeriod},
      {"05 20 25", "20.CódSubItem=00706", "201004", "201005", 3, kSubItem, kPeriod},
      {"05 20 25", "20.CódSubItem=00707", "201004", "201005", 3, kSubItem, kPeriod},
      {"05 20 28", "20.CódSubItem=00220", "201004", "201003", 3, kSubItem, kPeriod},
      {"05 20 28", "20.CódSubItem=00221; 28.CodAutorizacao=100aubl00001", "201004", "201003", 3, kSubItem,
       kPeriod},
      {"05 20 28", "20.CódSubItem=00740; 28.CodAutorizacao=100tubl00001", "201004", "201003", 3, kSubItem,
       kPeriod},
      {"05 20 28", "20.CódSubItem=00741; 28.CodAutorizacao=100rubl00001", "201004", "201003", 3, kSubItem,
       kPeriod},
      {"05 20 28", "20.CódSubItem=00223; 28.CodAutorizacao=100vubl00001", "201201", "201003", 3,
       "Tabela 06, CR=20, Campo - CódSubitem '002.23'", kPeriod},
      {"05 20 28", "20.CódSubItem=00744; 28.CodAutorizacao=100cubl00001", "201201", "201003", 3,
       "Tabela 06, CR=20, Campo - CódSubitem '007.44'", kPeriod},
      {"05 20 28", "20.CódSubItem=00745; 28.CodAutorizacao=100iubl00001", "201201", "201003", 3,
       "Tabela 06, CR=20, Campo - CódSubitem '007.45'", kPeriod},
      {"05 20 28", "20.CódSubItem=00223; 28.CodAutorizacao=100vubl00001", "201201", "201004", 3, kSubItem,
       kPeriod},
      {"05 20 28", "20.CódSubItem=00223; 28.CodAutorizacao=100vubl00001; 20.PrópriaOuST=1", "201201",
       "201112", 3, kSubItem, kPeriod},
      {"05 20 28", "20.CódSubItem=00744; 28.CodAutorizacao=100cubl00001; 20.PrópriaOuST=1", "201201",
       "201003", 3, kSubItem, kPeriod},
      {"05 20 28", "20.CódSubItem=00745; 28.CodAutorizacao=100iubl00001", "201201", "201112", 3, kSubItem,
       kPeriod},
      {"05 20", "20.CódSubItem=00742", "201001", "200912", 3, kSubItem, kPeriod},
      {"05 20", "20.CódSubItem=00715", "201112", "201201", 3, kSubItem, kPeriod},
      {"05 20", "20.CódSubItem=00715; 20.PrópriaOuST=1", "201112", "201201", 3, kSubItem, kPeriod},
      {"05 20", "20.CódSubItem=00225", "201201", "201112", 3, kSubItem, kPeriod},
      {"05 20", "20.CódSubItem=00747", "201201", "201112", 3, kSubItem, kPeriod},
      {"05 20", "20.CódSubItem=00205", "201112", "201201", 3, kSubItem, kPeriod},
      {"05 20", "20.CódSubItem=00205; 20.PrópriaOuST=1", "201112", "201201", 3, kSubItem, kPeriod},
      {"05 20 27", "20.PrópriaOuST=0", "201112", "201201", 3, kSubItem, kPeriod},
      {"05 20", "20.CódSubItem=00226; 20.PrópriaOuST=1", "201301", "201212", 3, kSubItem, kPeriod},
      {"05 20", "20.CódSubItem=00748; 20.PrópriaOuST=1", "201301", "201212", 3, kSubItem, kPeriod},
  };
  CheckAll(kLimits);
  constexpr Case kCases[] = {
      // Tax substitution is free of what holds for own operations only.
      {"05 20", "20.CódSubItem=00201; 20.PrópriaOuST=1"},
      {"05 20", "20.CódSubItem=00742; 20.PrópriaOuST=1; 05.Ref=200912"},
      {"05 20 28", "20.PrópriaOuST=1; 05.Ref=201003"},
      {"05 20 27", "20.CódSubItem=00702; 27.NF=0"},
      // Of periods before 201111 the period is told, afterwards the contributor.
      {"05 20", "20.CódSubItem=00224; 05.Ref=201110", 3, kSubItem, kPeriod},
      {"05 20", "20.CódSubItem=00746; 05.Ref=201110", 3, kSubItem, kPeriod},
      {"05 20", "20.CódSubItem=00224; 05.Ref=201111", 3, kSubItem, kContributor},
      {"05 20", "20.CódSubItem=00746; 05.Ref=201111", 3, kSubItem, kContributor},
      {"05 20", "05.IE=800042490101", 3, kSubItem, kContributor},
      {"05 20", "05.IE=800042490101; 20.CódSubItem=00746"},
      {"05 20", "05.IE=800042490101; 20.CódSubItem=00299; 20.FLegal=a; 20.Ocorrência=a"},
      {"05 20", "05.IE=800042490101; 20.CódSubItem=00399; 20.FLegal=a; 20.Ocorrência=a"},
      {"05 20", "05.IE=800042490101; 20.CódSubItem=00799; 20.FLegal=a; 20.Ocorrência=a"},
      {"05 20", "05.IE=800042490101; 20.CódSubItem=00899; 20.FLegal=a; 20.Ocorrência=a"},
      {"05 20", "05.IE=800042490101; 20.CódSubItem=01499; 20.FLegal=a; 20.Ocorrência=a"},
      {"05 20", "05.IE=800042490101; 20.CódSubItem=00499; 20.FLegal=a; 20.Ocorrência=a", 3, kSubItem,
       kContributor},
  };
  CheckAll(kCases);
}

TEST(Occurrence, SubItemsThatExcludeEachOther) {
  struct Pair {
    std::string_view first, second;
    bool refused;
  };
  // 01218 and the like stand for the same three digits in a later item.
  constexpr Pair kPairs[] = {
      {"00218", "00219", true},  {"00218", "00729", true},  {"00218", "00730", true},
      {"00219", "00729", true},  {"00219", "00730", false}, {"00219", "01218", false},
      {"00729", "00730", true},  {"00729", "01218", true},  {"00729", "01219", true},
      {"00730", "01218", true},  {"00730", "01219", true},  {"00730", "01729", true},
      {"00217", "00218", false}, {"00218", "01218", false},
  };
  for (const auto& [first, second, refused] : kPairs) {
    const std::string codes =
        "20.CódSubItem=" + std::string(first) + "; 20#2.CódSubItem=" + std::string(second);
    const std::string edits = codes + "; 20.PrópriaOuST=1; 20#2.PrópriaOuST=1";
    const std::string old = edits + "; 05.Ref=200112";
    const std::string apart = edits + "; 05#2.Ref=201204";
    SCOPED_TRACE(edits);
    Check({"05 20*2", edits, refused ? 4 : kAccepted, "Tabela 6, CR=20, Campo - CódSubitem",
           "inconsistente, Posição 3"});
    Check({"05 20*2", old});
    Check({"05 20 05 20", apart});  // they do so within one declaration only
  }
  constexpr Limit kLimits[] = {
      {"05 20*2", "20.CódSubItem=00218; 20#2.CódSubItem=00219; 20.PrópriaOuST=1; 20#2.PrópriaOuST=1",
       "200112", "200201", 4, "Tabela 6, CR=20, Campo - CódSubitem", "inconsistente, Posição 3"}};
  CheckAll(kLimits);
}

TEST(Occurrence, QuantitiesByPeriod) {
  constexpr Limit kLimits[] = {
      {"05 20 25", "20.CódSubItem=00729", "200201", "200112", 3, "Tabela 06, CR=20, Campo - Q25",
       "Posição 424. Inconsistente "},
      {"05 20 26", "26.DataInicio=200112; 26.DataFim=200112", "200201", "200112", 3,
       "Tabela 06, CR=20, Campo - Q26 _x_Q27", "Posição 428_x_432. Inconsistente "},
      {"05 20 27", "", "200201", "200112", 3, "Tabela 06, CR=20, Campo - Q26 _x_Q27",
       "Posição 428_x_432. Inconsistente "},
      {"05 20 28", "20.PrópriaOuST=1", "200801", "200712", 3, "Tabela 06, CR=20, Campo - Q28",
       "Posição 433_x437. Inconsistente "},
  };
  CheckAll(kLimits);
  constexpr Case kCases[] = {{"05 20 25", "20.CódSubItem=00704; 05.Ref=200112"},
                             {"05 20 25", "20.CódSubItem=00707; 05.Ref=200112"}};
  CheckAll(kCases);
}

TEST(Occurrence, QuantitiesBySubItem) {
  constexpr std::string_view kQ25 = "Tabela 06, CR=20, Campo - Q25";
  constexpr std::string_view kQ28 = "Tabela 13, CR=20, Campo - Q28";
  constexpr Case kCases[] = {
      {"05 20 25", "20.CódSubItem=00301", 3, kQ25, "Posição 424. Inconsistente "},
      {"05 20 25", "20.CódSubItem=00217", 3, kQ25, "Posição 424. Inconsistente "},
      {"05 20 25", "20.CódSubItem=00227", 3, kQ25, "Posição 424. Inconsistente "},
      {"05 20 25", "20.CódSubItem=00728", 3, kQ25, "Posição 424. Inconsistente "},
      {"05 20 25", "20.CódSubItem=00731", 3, kQ25, "Posição 424. Inconsistente "},
      {"05 20 25", "20.CódSubItem=00749", 3, kQ25, "Posição 424. Inconsistente "},
      {"05 20 25", "20.CódSubItem=01729", 3, kQ25, "Posição 424. Inconsistente "},  // the whole code counts
      {"05 20 25", "20.CódSubItem=00708; 05.Ref=201004", 3, kQ25, "Posição 424. Inconsistente "},
      {"05 20 26", "20.CódSubItem=00209", 3, "Tabela 06, CR=20, Campo - Q26", "Posição 428. Inconsistente "},
      {"05 20 26", "20.CódSubItem=00211; 26.NF=0"},
      {"05 20 27", "20.CódSubItem=00708", 3, "Tabela 06, CR=20, Campo - Q27", "Posição 432. Inconsistente "},
      {"05 20 28", "20.CódSubItem=00222", 3, kQ28, "Posição 432. Inconsistente "},
      {"05 20", "20.CódSubItem=00220", 3, kQ28, "Posição 432. Inconsistente "},
      {"05 20", "20.CódSubItem=00745", 3, kQ28, "Posição 432. Inconsistente "},
      {"05 20", "20.CódSubItem=00704; 05.Ref=201004", 3, kQ25, "Inconsistente,Posição 424 "},
      {"05 20", "20.CódSubItem=00707; 05.Ref=201004", 3, kQ25, "Inconsistente,Posição 424 "},
      {"05 20", "20.CódSubItem=00708; 05.Ref=201004"},
      {"05 20", "20.CódSubItem=00704; 20.PrópriaOuST=1"},
      {"05 20 25", "20.CódSubItem=00218", 3, kSubItem,
       "Informação para Ocorrências Inconsistente ,Posição 23 ou 24 "},
      {"05 20 25", "20.CódSubItem=00226; 05.Ref=201301", 3, kSubItem,
       "Informação para Ocorrências Inconsistente ,Posição 23 ou 24 "},
      {"05 20", "20.CódSubItem=01704; 05.Ref=201004", 3, kQ25, "Posição 1. Inconsistente "},
      {"05 20", "20.CódSubItem=01707; 05.Ref=201004", 3, kQ25, "Posição 1. Inconsistente "},
      {"05 20", "20.CódSubItem=01708; 05.Ref=201004"},
      {"05 20", "20.CódSubItem=00218", 3, kQ25, "Posição 424. Inconsistente "},
      {"05 20", "20.CódSubItem=00226; 05.Ref=201301", 3, kQ25, "Posição 424. Inconsistente "},
      {"05 20", "20.CódSubItem=00729", 3, kQ25, "Posição 424. Inconsistente "},
      {"05 20 25", "20.CódSubItem=00729"},
      {"05 20 25*2", "20.CódSubItem=00729", 3, kQ25, "Posição 424. Inconsistente "},
      {"05 20 25*2", "20.CódSubItem=00730"},
      {"05 20", "20.CódSubItem=00730", 3, kQ25, "Posição 424.Inconsistente "},
      {"05 20", "20.CódSubItem=00219", 3, kQ25, "Posição 424.Inconsistente "},
      {"05 20", "20.CódSubItem=00748; 05.Ref=201301", 3, kQ25, "Posição 424.Inconsistente "},
      {"05 20", "20.CódSubItem=00730; 20.PrópriaOuST=1"},
      {"05 20", "20.CódSubItem=00210", 3, "Tabela 06, CR=20, Campo - Q26", "Posição 428. Inconsistente "},
      {"05 20", "20.CódSubItem=00211; 20.PrópriaOuST=1", 3, "Tabela 06, CR=20, Campo - Q26",
       "Posição 428. Inconsistente "},
      {"05 20 25", "20.CódSubItem=00704; 20.PrópriaOuST=1", 3, "Tabela 06, CR=20, Campo - PrópriaOuST",
       "Posição 23 inconsistente "},
      {"05 20", "20.CódSubItem=00701; 20.PrópriaOuST=1", 3, "Tabela 06, CR=20, Campo - Q27",
       "Posição 432 inconsistente "},
      {"05 20", "20.CódSubItem=00702; 20.PrópriaOuST=1", 3, "Tabela 06, CR=20, Campo - Q27",
       "Posição 432 inconsistente "},
  };
  CheckAll(kCases);
}

TEST(Occurrence, FieldsTextsAndSequence) {
  constexpr std::string_view kTexts = "Tabela 06, CR=20, Campo - CódSubitem_e_FLegal_ou_Ocorrência";
  constexpr std::string_view kTextsSecond = "Inconsistente, Posição 3_e_24_ou_124";
  constexpr std::string_view kLetters = "Falta informação (Flegal e ou Ocorrência), Posição 24 e ou 124 ";
  constexpr std::string_view kNoValue = "Não informado, Posição 3 ou 8";
  constexpr std::string_view kSequence = "duplicado ou fora de sequência, Posição 3";
  constexpr Case kCases[] = {
      {"05 20", "20.CódSubItem=00000", 3, kSubItem, "Inconsistente, Posição 3"},
      {"05 20", "20.CódSubItem=99998", 3, kSubItem, "Não encontrado na tabela, Posição 3"},
      {"05 20", "20.PrópriaOuST=2", 3, "Tabela 06, CR=20, Campo - PrópriaOuST", "Inconsistente, Posição 23"},
      {"05 20", "05.RegTrib=04; 05.Ref=200512", 3, "Tabela 06, CR=20, Campo - PrópriaOuST",
       "Inconsistente, Posição 23"},
      {"05 20", "05.RegTrib=04; 05.Ref=200512; 20.PrópriaOuST=1"},
      {"05 20", "20.FLegal=a", 3, kTexts, kTextsSecond},
      {"05 20", "20.Ocorrência=a", 3, kTexts, kTextsSecond},
      {"05 20", "20.CódSubItem=00399", 3, kTexts, kTextsSecond},
      {"05 20", "20.CódSubItem=00399; 20.FLegal=art. 1; 20.Ocorrência=texto"},
      {"05 20", "20.CódSubItem=00399; 20.Ocorrência=texto", 3, kSubItem, kLetters},
      {"05 20", "20.CódSubItem=00399; 20.FLegal=art. 1", 3, kSubItem, kLetters},
      {"05 20", "20.CódSubItem=00399; 20.FLegal=art. 1; 20.Ocorrência=12 \xE7", 3, kSubItem, kLetters},
      {"05 20", "20.CódSubItem=00206; 20.Valor=0", 3, "Tabela 06, CR=20, Campo - Valor", kNoValue},
      {"05 20", "20.CódSubItem=00301; 20.Valor=0", 3, "Tabela 06, CR=20, Campo - Valor", kNoValue},
      {"05 20", "20.CódSubItem=00708; 20.Valor=0", 3, "Tabela 06, CR=20, Campo - Valor", kNoValue},
      {"05 20", "20.CódSubItem=00801; 20.Valor=0", 3, "Tabela 06, CR=20, Campo - Valor", kNoValue},
      {"05 20", "20.CódSubItem=01401; 20.Valor=0"},
      {"05 20*2", "20#2.CódSubItem=00301", 4, "Tabela 6, CR=20, Campo - CódSubitem", kSequence},
      {"05 20*2", "20#2.CódSubItem=00206", 4, "Tabela 6, CR=20, Campo - CódSubitem", kSequence},
      {"05 20*2", "20#2.CódSubItem=00301; 20#2.PrópriaOuST=1"},
      {"05 20*2", "20#2.CódSubItem=00301; 20.PrópriaOuST=1", 4, "Tabela 6, CR=20, Campo - CódSubitem",
       kSequence},
      {"05 20*2",
       "20.CódSubItem=00399; 20.FLegal=a; 20.Ocorrência=a; 20#2.CódSubItem=00399; 20#2.FLegal=a;"
       "20#2.Ocorrência=a"},
      {"05 20*2", "20.CódSubItem=00399; 20.FLegal=a; 20.Ocorrência=a", 4,
       "Tabela 6, CR=20, Campo - CódSubitem", kSequence},
      {"05 20 05 20", ""},  // a new declaration begins anew
  };
  CheckAll(kCases);
}

TEST(Occurrence, ValueAgainstTheSumOfDetails) {
  constexpr std::string_view kFirst = "Tabela: 06, CR 20, Campo: Valor, Posição: 8";
  constexpr std::string_view kDetails =
      "O campo Valor é diferente da somatória do campo Valor dos CR=25 ou 26 ou 27. ";
  constexpr std::string_view kAuthorizations =
      "O campo Valor é diferente da somatória do campo Valor dos CR=28. ";
  constexpr Case kCases[] = {
      {"05 20 25", "20.Valor=12345; 25.Valor=12345"},
      {"05 20 25", "20.Valor=12345; 25.Valor=12344", 4, kFirst, kDetails},
      {"05 20 25*2", "20.Valor=999999999999999; 25.Valor=1; 25#2.Valor=999999999999998"},
      {"05 20 25*2", "20.Valor=201", 5, kFirst, kDetails},
      {"05 20 26*2", "26#2.Valor=99", 5, kFirst, kDetails},
      {"05 20 27*2", "27#2.Valor=101", 5, kFirst, kDetails},
      {"05 20 28*2", "20.Valor=201", 5, kFirst, kAuthorizations},
      // Each occurrence has a sum and a list of details of its own.
      {"05 20 26 20 28*2 20 27 20 25*2", ""},
      {"05 20 25 20 25", "05.Ref=200912; 20.CódSubItem=00704; 20#2.CódSubItem=00705"},
      {"05 20 26 20 26", "20#2.CódSubItem=00211; 26#2.NF=0"},
      {"05 20 27 20 27", "20#2.CódSubItem=00702; 27#2.NF=0"},
      {"05 20 28 20 28", "20#2.CódSubItem=00221; 28#2.CodAutorizacao=100aubl00001"},
      {"05 20 28 20 28", "20#2.CódSubItem=00220; 20#2.PrópriaOuST=1"},
      {"05 20 25*2 05 20 25*2", ""},
  };
  CheckAll(kCases);
}

}  // namespace
}  // namespace tremvik::test
