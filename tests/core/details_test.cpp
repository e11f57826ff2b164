// Details of occurrences, exports.
#include <gtest/gtest.h>

#include "checks/credit_code.h"
#include "tests/support/cases.h"

namespace tremvik::test {
namespace {

TEST(Details, StateRegistrations) {
  constexpr Case kCases[] = {
      {"05 20 25*2", "25#2.IE=110042490101", 5, "Tabela 7, CR=25 Campo - IE", "fora de sequência, Posição 3"},
      {"05 20 25*2", "25#2.IE=110042490100", 5, "Tabela 7, CR=25 Campo - IE", "fora de sequência, Posição 3"},
      {"05 20 25", "25.IE=999999999999", 4, "Tabela 07, CR=25, Campo - IE", "Inválida, Posição 3"},
  };
  CheckAll(kCases);
}

TEST(Details, Substitutes) {
  constexpr std::string_view kDates = "Tabela 16, CR=26, Campo - DataFim_x_DataInicio";
  constexpr std::string_view kDatesSecond = "Inconsistente, Posições 27_x_21";
  constexpr Case kCases[] = {
      {"05 20 26*2", "26#2.IESubstituto=110042490101", 5, "Tabela 16, CR=26 Campo - IESubstituto",
       "inconsistente, Posições 3_x_15"},
      {"05 20 26*2", "26#2.IESubstituto=110042490101; 26#2.NF=2"},
      {"05 20 26", "26.IESubstituto=999999999999", 4, "Tabela 16, CR=26, Campo - IESubstituto",
       "Inválida, Posição 3"},
      {"05 20 26", "26.DataInicio=201113", 4, "Tabela 16, CR=26, Campo - DataInicio",
       "Inconsistente, Posição 21"},
      {"05 20 26", "26.DataFim=201200", 4, "Tabela 16, CR=26, Campo - DataFim", "Inconsistente, Posição 27"},
      {"05 20 26", "26.NF=0", 4, "Tabela 6_x_16, CRs 20_x_26, Campo - NF", "Inconsistente, Posição 3_x_15"},
      {"05 20 26", "20.CódSubItem=00211; 26.NF=0"},
      {"05 20 26", "20.CódSubItem=00211", 4, "Tabela 6_x_16, CRs 20_x_26, Campo - NF",
       "Inconsistente, Posição 3_x_15"},
      {"05 20 26", "26.DataInicio=201003; 26.DataFim=201003"},
      {"05 20 26", "26.DataInicio=201003; 26.DataFim=201002", 4, kDates, kDatesSecond},
      {"05 20 26", "26.DataFim=201203"},
      {"05 20 26", "26.DataFim=201204", 4, kDates, kDatesSecond},
  };
  CheckAll(kCases);
}

TEST(Details, Substituted) {
  constexpr Case kCases[] = {
      {"05 20 27*2", "27#2.IESubstituído=110042490101", 5, "Tabela 17, CR=27 Campo - IESubstituído_x_NF",
       "inconsistente, Posição 3_x_15"},
      {"05 20 27*2", "27#2.IESubstituído=110042490101; 27#2.NF=2"},
      {"05 20 27", "27.IESubstituído=999999999999", 4, "Tabela 17, CR=27, Campo - IE", "Inválida, Posição 3"},
      {"05 20 27", "27.NF=0", 4, "Tabela 6_x_17, CRs 20_x_27, Campo - CódSubItem_x_NF",
       "Inconsistente, Posição 3_x_15"},
      {"05 20 27", "20.CódSubItem=00702; 27.NF=0"},
      {"05 20 27", "20.CódSubItem=00702; 27.NF=123", 4, "Tabela 6_x_17, CRs 20_x_27, Campo - CódSubItem_x_NF",
       "Inconsistente, Posição 3_x_15"},
  };
  CheckAll(kCases);
}

TEST(Details, Authorizations) {
  constexpr std::string_view kCode = "Tabela 18, CR=28 Campo - CodAutorizacao";
  constexpr Case kCases[] = {
      {"05 20 28*2", "28#2.CodAutorizacao=100dubl00001", 5, "Tabela 19, CR=29 Campo - CodAutorizacao",
       "inconsistente, Posição 3"},
      {"05 20 28*2", "28#2.CodAutorizacao=100dubl00000", 5, "Tabela 19, CR=29 Campo - CodAutorizacao",
       "inconsistente, Posição 3"},
      {"05 20 28*2", "28#2.CodAutorizacao=100dubl0000a"},
      {"05 20 28", "28.CodAutorizacao=100aubl00001", 4, kCode, "inconsistente, Posição 3"},
      {"05 20 28", "20.CódSubItem=00221", 4, kCode, "inconsistente, Posição 3"},
      {"05 20 28", "05.IE=110042491114", 4, kCode, "inconsistente, Posição 3"},
      {"05 20 28", "20.Valor=199; 28.Valor=199"},
      {"05 20 28", "20.Valor=200; 28.Valor=200", 4, kCode, "inconsistente, Posição 3"},
  };
  CheckAll(kCases);
}

TEST(Details, CreditCode) {
  struct Code {
    std::string_view code, value, sub_item, ie;
    bool rejected;
  };
  constexpr Code kCodes[] = {
      {"100dubl00001", "000000000000100", "00220", "110042490114", false},
      {"000dubl00001", "000000000000099", "00220", "110042490114", false},
      {"c9nd000zzzzz", "000000012345678", "00220", "000000000114", false},
      {"000a00100000", "000000004665600", "00221", "000001296114",
       false},  // 36 to the power 3, to the power 2
      {"zzzt10000000", "000000004665599", "00740", "000000001114", false},
      {"100rubl00000", "000000000000100", "00741", "110042490114", false},
      {"100vubl00000", "000000000000100", "00223", "110042490114", false},
      {"100cubl00000", "000000000000100", "00744", "110042490114", false},
      {"100iubl00000", "000000000000100", "00745", "110042490114", false},
      {"200dubl00001", "000000000000100", "00220", "110042490114", true},
      {"110dubl00001", "000000000000100", "00220", "110042490114", true},
      {"101dubl00001", "000000000000100", "00220", "110042490114", true},
      {"100Dubl00001", "000000000000100", "00220", "110042490114", true},
      {"100dvbl00001", "000000000000100", "00220", "110042490114", true},
      {"100dubm00001", "000000000000100", "00220", "110042490114", true},
      {"100dubl0000A", "000000000000100", "00220", "110042490114", true},
      {"100dubl 0001", "000000000000100", "00220", "110042490114", true},
      {"100dubl00001", "000000000000100", "00222", "110042490114", true},
      {"100dubl00001", "000000000000100", "", "110042490114", true},
  };
  for (const auto& [code, value, sub_item, ie, rejected] : kCodes) {
    EXPECT_EQ(CodCredAcumuladoRejeitado(code, value, sub_item, ie), rejected) << code << " " << sub_item;
  }
}

TEST(Details, Exports) {
  constexpr Case kCases[] = {
      {"05 31*2", "31#2.RE=000000000000001", 4, "Tabela 18, CR=31 Campo - RE", "inconsistente, Posição 3"},
      {"05 31*2", "31#2.RE=000000000000000", 4, "Tabela 18, CR=31 Campo - RE", "inconsistente, Posição 3"},
      {"05 31", "31.RE=000000000000000"},
      {"05 31 05 31", ""},  // the first of a declaration is compared with nothing
  };
  CheckAll(kCases);
}

}  // namespace
}  // namespace tremvik::test
