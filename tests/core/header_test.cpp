// Master record, header of a declaration and payments.
#include <gtest/gtest.h>

#include "tests/support/cases.h"

namespace tremvik::test {
namespace {

TEST(Header, MasterRecord) {
  constexpr Case kCases[] = {
      {"05", "01.TipoDocto=02", 1, "Tabela 01, CR=01, Campo - TipoDocto", "Inconsistente, Posição 3 "},
      {"05", "01.DataGeração=00000000", 1, "Tabela 01, CR=01, Campo - DataGeração",
       "Inconsistente, Posição 5 "},
      {"05", "01.DataGeração=20020230", 1, "Tabela 01, CR=01, Campo - DataGeração",
       "Inconsistente, Posição 5 "},
      {"05", "01.HoraGeração=250000", 1, "Tabela 01, CR=01, Campo - HoraGeração",
       "Inconsistente, Posição 13 "},
      {"05", "01.HoraGeração=245959; 01.DataGeração=19000229"},
      {"05", "01.VersãoFrontEnd=0001", 1, "Tabela 01, CR=01, Campo - VersãoFrontEnd",
       "Inconsistente, Posição 19"},
      {"05", "01.VersãoPref=0211", 1, "Tabela 01, CR=01, Campo - VersãoPref", "Inconsistente, Posição 23"},
      {"", "", 1, "Tabela 01, CR=01, Campo - Q05", "Inconsistente, Posição 27"},
  };
  CheckAll(kCases);
}

TEST(Header, Fields) {
  constexpr Case kCases[] = {
      {"05", "05.IE=000000000000", 2, "Tabela 2, CR=05, Campo - IE", "Inconsistente, Posição 3"},
      {"05", "05.IE=999999999999", 2, "Tabela 2, CR=05, Campo - IE", "Inválido, Posição 3"},
      {"05", "05.CNPJ=00000000000000"},
      {"05", "05.CNPJ=99999999999999", 2, "Tabela 2, CR=05, Campo - CNPJ", "Inválido, Posição 15"},
      {"05", "05.CNAE=6201500", 2, "CNAE 6201500 Inconsistente.", "Tabela 2, CR=05, Posição 29."},
      {"05", "05.CNAE=620150\xE7", 2, "CNAE 620150ç Inconsistente.", "Tabela 2, CR=05, Posição 29."},
      {"05", "05.RegTrib=00", 2, "Tabela 2, CR=05, Campo - RegTrib", "Inválido, Posição 36"},
      {"05", "05.RegTrib=03"},
      {"05", "05.RegTrib=05; 05.Ref=200512", 2, "Tabela 2, CR=05, Campo - RegTrib", "Inválido, Posição 36"},
      {"05 30", "05.RegTrib=04; 05.Ref=200601", 2, "Tabela 2, CR=05, Campo - Q30", "Inválido, Posição 122"},
      {"05", "05.Ref=201213", 2, "Tabela 2, CR=05 Campo - Ref", "Inválido, Posição 38"},
      {"05", "05.Ref=000012", 2, "Tabela 2, CR=05 Campo - Ref", "Inválido, Posição 38"},
      {"05", "05.Ref=199901"},
      {"05", "05.RefInicial=201213", 2, "Tabela 2, CR=05, Campo - RefInicial", "Inválida, Posição 44"},
      {"05", "05.Tipo=03; 05.Movimento=1; 05.Transmitida=1"},
      {"05", "05.Tipo=04", 2, "Tabela 2, CR=05, Campo - Tipo", "Inconsistente, Posição 50 "},
      {"05", "05.Movimento=2", 2, "Tabela 2, CR=05, Campo - Movimento", "Inconsistente, Posição 52 "},
      {"05", "05.Transmitida=2", 2, "Tabela 2, CR=05, Campo - Transmitida", "Inconsistente, Posição 53"},
      {"05", "05.OrigemPreDig=1; 05.ChaveInterna=0123456789abcdefABCDEF0000000000"},
      {"05", "05.OrigemPreDig=2", 2, "Tabela 2, CR=05, Campo - OrigemPreDig", "Inconstente, Posição 98"},
      {"05", "05.ChaveInterna=g", 2, "Tabela 2, CR=05, Campo - ChaveInterna", "Inconsistente, Posição 114"},
      {"05", "05.SaldoCredPeriodoAnt=-00000000000001", 2, "Tabela 2, CR=05, Campo - SaldoCredPeriodoAnt",
       "Inconsistente, Posição 54"},
  };
  CheckAll(kCases);
}

TEST(Header, PeriodLimits) {
  constexpr Limit kLimits[] = {
      {"05", "05.RegTrib=04", "200007", "200006", 2, "Tabela 2, CR=05, Campo - Ref",
       "Inconsistente, Posição 38"},
      {"05", "05.RegTrib=04", "200512", "200601", 2, "Tabela 2, CR=05, Campo - Ref",
       "Inconsistente, Posição 38"},
      {"05", "05.IE=800042490114", "201201", "201112", 2,
       "Só é permitida a importação de referências a partir de 01/2012.", ""},
      {"05 30", "", "200101", "200012", 2,
       "Tabela 2, CR=05 Campo - Ref x Q30 :", "inconsistentes, Posição 38 "},
      {"05 31", "", "200201", "200112", 2,
       "Tabela 2, CR=05 Campo - Ref x Q31 :", "inconsistentes, Posição 38_x_158 "},
  };
  CheckAll(kLimits);
}

TEST(Header, FieldsAgainstEachOther) {
  constexpr std::string_view kSequence = "Duplicado ou fora de seqüência. Posição 3_x_18";
  constexpr Case kCases[] = {
      {"05*2", "05#2.IE=110042490101", 3, "Tabela 2, CR=05, Campo - IE_x_Ref", kSequence},
      {"05*2", "05#2.IE=110042490101; 05#2.Ref=201204"},
      {"05*2", "05#2.IE=110042490100; 05#2.Ref=201204", 3, "Tabela 2, CR=05, Campo - IE_x_Ref", kSequence},
      {"05*2", "05#2.Ref=201101"},
      {"05", "05.RefInicial=201203", 2, "Tabela 2, CR=05, Campo - RefInicial", "Inválido, Posição 44"},
      {"05", "05.RegTrib=03; 05.RefInicial=201203", 2, "Tabela 2, CR=05, Campo - RefInicial",
       "Inválido, Posição 44"},
      {"05", "05.RegTrib=02; 05.Ref=201208; 05.RefInicial=201207; 05.ICMSFixPer=1"},
      {"05", "05.RegTrib=02; 05.Ref=201208; 05.RefInicial=201208; 05.ICMSFixPer=1"},
      {"05", "05.RegTrib=02; 05.Ref=201208; 05.RefInicial=201206", 2,
       "Tabela 2, CR=05, Campo - Ref/RefInicial", "Inválido, Posição 38/44 "},
      {"05", "05.RegTrib=02; 05.Ref=201208; 05.RefInicial=201209", 2,
       "Tabela 2, CR=05, Campo - Ref/RefInicial", "Inválido, Posição 38/44 "},
      {"05", "05.RegTrib=02; 05.Ref=201208; 05.RefInicial=201107", 2,
       "Tabela 2, CR=05, Campo - Ref/RefInicial", "Inválido, Posição 38/44 "},
      {"05", "05.RegTrib=02; 05.Ref=201206; 05.RefInicial=201206; 05.ICMSFixPer=1"},
      {"05", "05.RegTrib=02; 05.Ref=201206; 05.RefInicial=201207", 2,
       "Tabela 2, CR=05, Campo - Ref/RefInicial", "Inválido, Posição 38/44"},
      {"05", "05.RegTrib=02; 05.Ref=201203; 05.RefInicial=201204", 2,
       "Tabela 2, CR=05, Campo - Ref/RefInicial", "Inválido, Posição 38/44"},
      {"05", "05.RegTrib=02; 05.Ref=201207; 05.RefInicial=201206", 2,
       "Tabela 2, CR=05, Campo - Ref/RefInicial", "Inválido, Posição 38/44 "},
      {"05", "05.ICMSFixPer=1", 2, "Tabela 2, CR=05, Campo - ICMSFixPer", "Inválido, Posição 99 "},
      {"05", "05.RegTrib=02; 05.RefInicial=201201", 2, "Tabela 2, CR=05, Campo - ICMSFixPer",
       "Inválido, Posição 99 "},
      {"05", "05.OrigemPreDig=1", 2, "Tabela 2, CR=55, Campo - ChaveInterna", "Inconsistente, Posição 71"},
      {"05", "05.IE=110042490177", 2, "Tabela 2, CR=05, Campo -  Ref",
       "Esta Referência já existente, Posição 3."},
  };
  CheckAll(kCases);
}

TEST(Payments, FieldsAndPeriod) {
  constexpr std::string_view kLater =
      "Só é permitido preenchimento do campo pagamento para referência a partir de 01/2012";
  constexpr Case kCases[] = {
      {"05 07", "07.PrópriaOuST=2", 3, "Tabela 20, CR=07, Campo - PrópriaOuST", "Inconsistente, Posição 3"},
      {"05 07", "07.Data=00000000", 3, "Tabela 20, CR=07, Campo - Data", "Inconsistente, Posição 19"},
      {"05 07", "07.Data=20120431", 3, "Tabela 20, CR=07, Campo - Data", "Inválida, Posição 19"},
      {"05 07", "07.Data=20120301"},
      {"05 07", "07.Data=20120229", 3, "Tabela 20, CR=07, Campo - Data", "Período Inválido, Posição 19"},
      {"05 07", "07.Data=20120531"},
      {"05 07", "07.Data=20120601", 3, "Tabela 20, CR=07, Campo - Data", "Período Inválido, Posição 19"},
      {"05 07", "05.Ref=201210; 07.Data=20121231"},
      {"05 07", "05.Ref=201210; 07.Data=20130101", 3, "Tabela 20, CR=07, Campo - Data",
       "Período Inválido, Posição 19"},
      {"05 07", "05.Ref=201212; 07.Data=20130228"},
      {"05 07", "05.Ref=201212; 07.Data=20130301", 3, "Tabela 20, CR=07, Campo - Data",
       "Período Inválido, Posição 19"},
      {"05 07", "05.Ref=201201; 07.Data=20120101"},
      {"05 07", "05.Ref=201112; 07.Data=20120229", 3, "Tabela 20, CR=07, Campo - Data/Ref", kLater},
      {"05 07", "05.Ref=201112; 07.Data=20120301", 3, "Tabela 20, CR=07, Campo - Data",
       "Período Inválido, Posição 19"},
  };
  CheckAll(kCases);
}

TEST(Payments, FiveOfAKindWithDatesOfTheirOwn) {
  const std::string ten =
      "07#6.PrópriaOuST=1; 07#7.PrópriaOuST=1; 07#8.PrópriaOuST=1; 07#9.PrópriaOuST=1; 07#10.PrópriaOuST=1";
  const std::string eleven = ten + "; 07#11.PrópriaOuST=1";
  const Case cases[] = {
      {"05 07*2", "07#2.Data=20120301", 4, "Tabela 20, CR=07, Campo - Data", "Pagamentos com mesma data"},
      {"05 07*2", "07.PrópriaOuST=1; 07#2.PrópriaOuST=1; 07#2.Data=20120301", 4,
       "Tabela 20, CR=07, Campo - Data", "Pagamentos com mesma data"},
      {"05 07*2", "07#2.PrópriaOuST=1; 07#2.Data=20120301"},
      {"05 07*6", "", 8, "Tabela 20, CR=07 Campo - PrópriaOUST",
       "Quantidades de detalhamento de pagamentos de operações próprias maior que 5"},
      {"05 07*10", ten},
      {"05 07*11", eleven, 13, "Tabela 20, CR=07 Campo - PrópriaOUST",
       "Quantidades de detalhamento de pagamentos de operações ST maior que 5"},
      {"05 07*5 05 07*5", ""},  // each declaration has its own five, and its own dates
  };
  CheckAll(cases);
}

}  // namespace
}  // namespace tremvik::test
