// Numbers, dates, texts and display forms; the members that a host may call without a run.
#include <gtest/gtest.h>

#include "checks/credit_code.h"
#include "checks/dates.h"
#include "runtime/display.h"
#include "runtime/numbers.h"
#include "runtime/text.h"
#include "tests/support/cases.h"
#include "tests/support/files.h"

namespace tremvik::test {
namespace {

TEST(Values, Val) {
  for (const auto& [where, cells] : ReadTable("val.txt", 2))
    EXPECT_EQ(Val(cells[0]), std::stod(cells[1])) << where;
}

// Digits are read several at a time, so every width matters, and every byte in every place of it.
TEST(Values, DigitsOfEveryWidth) {
  const std::string digits = "9081726354091827";
  for (std::size_t width = 1; width <= digits.size(); ++width) {
    std::string text = digits.substr(0, width);
    EXPECT_EQ(Val(text), std::stod(text));
    EXPECT_TRUE(OnlyDigits(text)) << text;
    for (char& place : text) {
      const char kept = place;
      for (int byte = 0; byte < 256; ++byte) {
        place = static_cast<char>(byte);
        EXPECT_EQ(OnlyDigits(text), byte >= '0' && byte <= '9') << width << " characters, byte " << byte;
      }
      place = '/';
      EXPECT_EQ(Val(text), std::stod("0" + text));
      place = kept;
    }
  }
}

TEST(Values, NumericTests) {
  struct Numeric {
    std::string_view text;
    bool numeric, field;  // as a number; as a field of the file
  };
  constexpr Numeric kCases[] = {
      {"0", true, true},     {"007", true, true},   {"+7", true, true},      {" 7", true, false},
      {"7 ", true, false},   {"-7", true, false},   {"1.5", true, false},    {"1,5", true, false},
      {"7,", true, false},   {",7", true, false},   {"", false, false},      {" ", false, false},
      {"-", false, false},   {",", false, false},   {"1.5.5", false, false}, {"1,5.5", false, false},
      {"1 2", false, false}, {"1e2", false, false}, {"&H1", false, false},   {"R$1", false, false},
      {"7-", false, false},  {"- 7", false, false}, {"--7", false, false},   {std::string_view("\0\0", 2), false, false},
      {"\t7", false, false}, {"1A", false, false},
  };
  for (const auto& [text, numeric, field] : kCases) {
    EXPECT_EQ(IsNumeric(text), numeric) << text;
    EXPECT_EQ(LefRigNumChr(text), !field) << text;
  }
  EXPECT_FALSE(LefRigNumChr("000"));
  EXPECT_TRUE(LefRigNumChr("000", true));
  EXPECT_TRUE(LefRigNumChr("+00", true));
  EXPECT_FALSE(LefRigNumChr("+01", true));
  EXPECT_FALSE(LefRigNumChr("+00"));
  EXPECT_FALSE(LefRigNumChr("001", true));
}

TEST(Values, Integers) {
  EXPECT_EQ(ToInt16(std::string_view("32767")), 32767);
  EXPECT_EQ(ErrorOf([] { return ToInt16(std::string_view("32768")); }), 6);
  EXPECT_EQ(ToInt16(std::string_view("-32768")), -32768);
  EXPECT_EQ(ErrorOf([] { return ToInt16(std::string_view("-32769")); }), 6);
  EXPECT_EQ(ErrorOf([] { return ToInt16(std::string_view("000G")); }), 13);
  EXPECT_EQ(ErrorOf([] { return ToInt16(std::string_view("")); }), 13);
}

TEST(Values, Dates) {
  const std::pair<std::string_view, bool> dates[] = {
      {"20120229", true},  {"19000229", true},  {"21000229", true},  {"20130229", false}, {"20120230", false}, {"20120431", false},
      {"20120430", true},  {"20120131", true},  {"20120132", false}, {"20121231", true},  {"20120100", false}, {"20120001", false},
      {"20121301", false}, {"00000101", false}, {"00010101", true},  {"2012G101", false}, {"201201G1", false}, {"", false},
      {"201201", true},    {"201212", true},    {"201200", false},   {"201213", false},   {"000012", false},   {"000112", true},
  };
  for (const auto& [text, valid] : dates)
    EXPECT_EQ(ValidarData(text), !valid) << text;
  for (const std::string_view last : {"0131", "0229", "0331", "0430", "0531", "0630", "0731", "0831", "0930", "1031", "1130", "1231"}) {
    EXPECT_FALSE(ValidarData("2012" + std::string(last))) << last;
    EXPECT_TRUE(ValidarData("2012" + std::to_string(10001 + std::stoi(std::string(last))).substr(1))) << last;
  }
  const std::pair<std::string_view, bool> times[] = {
      {"000000", true},  {"235959", true},  {"240000", true},  {"245959", true},  {"250000", false}, {"126000", false},
      {"125960", false}, {"120060", false}, {"12AB00", false}, {"AB0000", false}, {"1200AB", false}, {"", false},
  };
  for (const auto& [text, valid] : times)
    EXPECT_EQ(ValidarHora(text), !valid) << text;
  EXPECT_EQ(ErrorOf([] { return ValidarHora("12-100"); }), 6);
}

TEST(Values, Texts) {
  for (const std::string_view text : {"12a", "Z", "z", "A", "1 b"})
    EXPECT_TRUE(ContemLetra(text)) << text;
  for (const std::string_view text : {"", "123", "\xE7\xC3", "@[`{", " "})
    EXPECT_FALSE(ContemLetra(text)) << text;
  EXPECT_TRUE(ChaveHexaValida("0123456789abcdefABCDEF9876543210"));
  EXPECT_FALSE(ChaveHexaValida("0123456789abcdefABCDEF987654321g"));
  EXPECT_FALSE(ChaveHexaValida("/123456789abcdefABCDEF9876543210"));
  EXPECT_FALSE(ChaveHexaValida("0123456789abcdef"));
  EXPECT_EQ(Utf8("\xE7\x80 \x81"), "ç€ \xC2\x81");
}

TEST(Values, FomataValor) {
  const Instance instance;
  EXPECT_EQ(instance.tremvik.FomataValor("000000000000000"), "0,00");
  EXPECT_EQ(instance.tremvik.FomataValor("000000000012345"), "123,45");
  EXPECT_EQ(instance.tremvik.FomataValor("000000000000005"), "0,05");
  EXPECT_EQ(instance.tremvik.FomataValor("000000000000050"), "0,50");
  EXPECT_EQ(instance.tremvik.FomataValor("000000000100000"), "1.000,00");
  EXPECT_EQ(instance.tremvik.FomataValor("123456789"), "1.234.567,89");
  EXPECT_EQ(instance.tremvik.FomataValor("99999"), "999,99");
  EXPECT_EQ(instance.tremvik.FomataValor("999999999999999"), "9.999.999.999.999,99");
  EXPECT_EQ(ErrorOf([&] { return instance.tremvik.FomataValor("00000000000012G"); }), 13);
  for (const std::string& front : {std::string(), std::string(60, '0'), std::string(60, ' ')}) {
    EXPECT_EQ(instance.tremvik.FomataValor(front + "92233720368547758"), "922.337.203.685.477,58");
    EXPECT_EQ(ErrorOf([&] { return instance.tremvik.FomataValor(front + "92233720368547759"); }), 6);
  }
}

TEST(Values, TiraZeros) {
  const std::tuple<std::string_view, std::string_view, std::string_view> cases[] = {
      {"200301", "510200", "5102"},
      {"200212", "510200", "512"},
      {"200212", "112000", "112"},
      {"200212", "000000", "0"},
      {"200212", "327670", "32767"},
      {"200301", "000000", "0000"},
      {"200213", "510200", "5102"},
      {"200301", "€çã😀x", "€çã😀"},
      {"200301", "\x80\x80\x80\x80\x80", "\x80\x80\x80\x80\x80"},  // characters of UTF-8
  };
  for (const auto& [ref, cfop, code] : cases)
    EXPECT_EQ(TiraZeros(ref, cfop).view(), code) << ref << cfop;
  EXPECT_EQ(ErrorOf([] { return TiraZeros("200212", "327680"); }), 6);
  EXPECT_EQ(ErrorOf([] { return TiraZeros("200212", "111111"); }), 6);
  EXPECT_EQ(ErrorOf([] { return TiraZeros("200212", "0000ç0"); }), 13);
}

TEST(Values, CreditCode) {
  struct Code {
    std::string_view code, value, sub_item, ie;
    bool rejected;
  };
  constexpr Code kCodes[] = {
      {"100dubl00001", "000000000000100", "00220", "110042490114", false},
      {"000dubl00001", "000000000000099", "00220", "110042490114", false},
      {"c9nd000zzzzz", "000000012345678", "00220", "000000000114", false},
      {"000a00100000", "000000004665600", "00221", "000001296114", false},  // 36 to the power 3, to the power 2
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

// Called by a host before any run, the members see empty records.
TEST(Values, MembersOutsideARun) {
  Instance instance;
  Tremvik& tremvik = instance.tremvik;
  EXPECT_EQ(tremvik.TiraZeros("510200"), "512");
  EXPECT_TRUE(tremvik.Validar_Cod_CredAcumulado());
  EXPECT_TRUE(tremvik.LefRigNumChr("0", true));
  EXPECT_FALSE(tremvik.LefRigNumChr("0", false, true));
  EXPECT_EQ(tremvik.linha(), "");
  EXPECT_EQ(tremvik.Mensagem(), "");
  EXPECT_EQ(tremvik.NroLinha(), 0);
  EXPECT_EQ(tremvik.database_name(), "");
  tremvik.set_database_name("outra");
  tremvik.set_idxBanco(-3);
  tremvik.set_bolRetMonitora(true);
  EXPECT_EQ(tremvik.database_name(), "outra");
  EXPECT_EQ(tremvik.idxBanco(), -3);
  EXPECT_TRUE(tremvik.bolRetMonitora());

  tremvik.ErroSair();
  EXPECT_EQ(instance.host.boxes.front().text, Report("", "", 0));
  EXPECT_EQ(instance.host.boxes.front().style, 0);
  EXPECT_EQ(instance.host.boxes.front().title, "");
  EXPECT_EQ(instance.host.log, (std::vector<std::string>{"Caixa", "Fechar", "Encerrar "}));
}

// After a run they go on with its last records.
TEST(Values, MembersAfterARun) {
  Instance instance;
  instance.Import(FileBuilder("05 20 28").Bytes());
  EXPECT_TRUE(instance.Succeeded());
  EXPECT_FALSE(instance.tremvik.Validar_Cod_CredAcumulado());
  EXPECT_EQ(instance.tremvik.TiraZeros("510200"), "5102");
  EXPECT_EQ(instance.tremvik.linha(), "");
}

}  // namespace
}  // namespace tremvik::test
