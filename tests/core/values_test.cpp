// Numbers, dates, texts and display forms; the members that a host may call without a run.
#include <gtest/gtest.h>

#include <sstream>

#include "checks/credit_code.h"
#include "checks/dates.h"
#include "records/cfop_validity.h"
#include "runtime/display.h"
#include "runtime/numbers.h"
#include "runtime/text.h"
#include "tests/support/cases.h"

namespace tremvik::test {
namespace {

// What the conversion `name` answers, as a text.
std::string Answer(std::string_view name, std::string_view text, std::string_view second) {
  std::ostringstream answer;
  answer.precision(15);
  const auto yes_no = [](bool yes) { return yes ? "yes" : "no"; };
  const auto parameters = Split(second, ' ');
  try {
    if (name == "Val") answer << Val(text) + 0.0;  // no sign of a zero
    if (name == "IsNumeric") answer << yes_no(IsNumeric(text));
    if (name == "LefRigNumChr") answer << yes_no(LefRigNumChr(text, second == "0"));
    if (name == "ToInt16") answer << ToInt16(text);
    if (name == "ValidarData") answer << yes_no(ValidarData(text));
    if (name == "ValidarHora") answer << yes_no(ValidarHora(text));
    if (name == "ContemLetra") answer << yes_no(ContemLetra(text));
    if (name == "ChaveHexaValida") answer << yes_no(ChaveHexaValida(text));
    if (name == "Utf8") answer << Utf8(text);
    if (name == "FomataValor") answer << FomataValor(text).view();
    if (name == "TiraZeros") answer << TiraZeros(second, text).view();
    if (name == "FormatarCFOP") answer << FormatarCFOP(second, text).view();
    if (name == "CodCredAcumulado")
      answer << yes_no(CodCredAcumuladoRejeitado(text, parameters.at(0), parameters.at(1), parameters.at(2)));
  } catch (const RuntimeError& error) {
    answer << "erro " << error.number();
  }
  return answer.str();
}

TEST(Values, Conversions) {
  for (const auto& [where, cells] : ReadTable("values.txt", 4))
    EXPECT_EQ(Answer(cells[0], cells[1], cells[2]), cells[3]) << where;
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

// Called by a host before any run, the members see empty records.
TEST(Values, MembersOutsideARun) {
  Instance instance;
  Tremvik& tremvik = instance.tremvik;
  EXPECT_EQ(tremvik.TiraZeros("510200"), "512");
  EXPECT_EQ(tremvik.FomataValor("000000000012345"), "123,45");
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
