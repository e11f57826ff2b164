// The first pass over a file: record codes and lengths, told in boxes of their own.
#include <gtest/gtest.h>

#include "tests/support/cases.h"

namespace tremvik::test {
namespace {

// The pass told `text`, and nothing else happened.
void ExpectTold(const Instance& run, std::string_view text) {
  EXPECT_EQ(run.host.boxes, (Boxes{{std::string(text), 16, "Mensagem..."}}));
  EXPECT_TRUE(run.tremvik.bolRetMonitora());
  EXPECT_EQ(run.tremvik.Mensagem(), "");
  EXPECT_EQ(run.tremvik.NroLinha(), 0);
  EXPECT_EQ(run.host.open_files(), 0U);
  for (const std::string& line : run.host.log) {
    EXPECT_TRUE(line != "Fechar" && line != "Progresso" && !line.starts_with("Encerrar") &&
                line != "Preparar")
        << line;
  }
  EXPECT_EQ(run.host.log.at(run.host.log.size() - 2 - run.host.places.size()), "Ponteiro 1");
  EXPECT_EQ(run.host.log.back(), "Caixa");
}

TEST(LengthPass, EachKindHasOneLength) {
  const std::string master = FileBuilder("").Record(1);
  for (const auto& [code, name, position, width] : Columns()) {
    if (name != "Separadores") continue;
    const auto right = static_cast<std::size_t>(position) - 1;
    for (const std::size_t size : {right - 1, right, right + 1}) {
      SCOPED_TRACE(code + " " + std::to_string(size));
      Instance run;
      run.Import(master + code + std::string(size - 2, '0') + "\r\n" + "99\r\n");
      const std::string text = size == right ? "Código de Registro inválido! CR = 99  -  Linha 3"
                                             : "Tamanho do registro inválido.  CR = " + code + "  -  Linha 2";
      ExpectTold(run, text);
      ASSERT_EQ(run.host.places.size(), 1U);
      const Place& place = run.host.places.front();
      EXPECT_EQ(place.line, size == right ? 3 : 2);
      EXPECT_EQ(place.position, size == right ? 1 : static_cast<int>(std::min(size, right)) + 1);
    }
  }
}

TEST(LengthPass, OtherFiles) {
  constexpr std::string_view kUnknown = "Código de Registro inválido! CR = ";
  const std::string ok = FileBuilder("05").Bytes();
  const std::tuple<std::string, std::string> cases[] = {
      {"", "Arquivo vazio ou inválido !"},
      {"9", std::string(kUnknown) + "9  -  Linha 1"},
      {"\r\n", std::string(kUnknown) + "  -  Linha 1"},
      {ok + "\r\n", std::string(kUnknown) + "  -  Linha 3"},
      {ok + "\x1A", std::string(kUnknown) + "\x1A  -  Linha 3"},
      {"\xE7\xE7 1", std::string(kUnknown) + "çç  -  Linha 1"},
      {" 1" + ok.substr(2), std::string(kUnknown) + " 1  -  Linha 1"},
      {std::string(30, '\0'), std::string(kUnknown) + std::string(2, '\0') + "  -  Linha 1"},
      {"\n" + ok, std::string(kUnknown) + "  -  Linha 1"},
      {"01" + std::string(200000, '0'), "Tamanho do registro inválido.  CR = 01  -  Linha 1"},
  };
  for (const auto& [bytes, text] : cases) {
    SCOPED_TRACE(text);
    Instance run;
    run.Import(bytes);
    ExpectTold(run, text);
  }
}

// A read may end anywhere, between the two characters of a line end too.
TEST(LengthPass, ReadsOfAnySize) {
  const std::string file = FileBuilder("05 07 10 14 18 20 25 30 31").Bytes();
  for (std::size_t size = 1; size < 60; ++size) {
    Instance run;
    run.host.most_read = size;
    run.Import(file);
    EXPECT_TRUE(run.Succeeded()) << size;
    run.Import("01\r\n");
    EXPECT_EQ(run.host.boxes.back().text, "Tamanho do registro inválido.  CR = 01  -  Linha 1");
  }
}

TEST(LengthPass, RunTimeErrors) {
  const std::tuple<std::string_view, int, std::string_view> cases[] = {
      {"Read", 62, "Arquivo vazio ou inválido!"},
      {"Read", 57, "Erro 57 -  Erro de E/S no dispositivo"},
      {"Open", 70, "Erro 70 -  Permissão negada"},
      {"Open", 53, "Erro 53 -  Arquivo não encontrado"},
      {"FreeFile", 67, "Erro 67 -  Excesso de arquivos"},
      {"Close", 57, "Erro 57 -  Erro de E/S no dispositivo"},
      {"Read", 0, "Erro 5 -  Chamada de procedimento ou argumento inválido"},
  };
  for (const auto& [operation, number, text] : cases) {
    SCOPED_TRACE(text);
    Instance run;
    run.host.Fail(operation, number);
    run.Import(FileBuilder("05").Bytes());
    ExpectTold(run, text);
    EXPECT_EQ(run.tremvik.outcome().estado, Outcome::Estado::kErro);
    EXPECT_EQ(run.tremvik.outcome().numero, number == 0 ? 5 : number);
  }
}

// Of the records of a file the last may be 32766: the read that finds the end counts too.
TEST(LengthPass, TheGreatestFiles) {
  const auto file = [](int lines) {
    return FileBuilder("05 31*9999 05 31*9999 05 31*9999 05 31*" + std::to_string(lines - 5 - 3 * 9999))
        .Bytes();
  };
  Instance most;
  most.Import(file(32766));
  EXPECT_TRUE(most.Succeeded());
  EXPECT_EQ(most.tremvik.NroLinha(), 32767);
  EXPECT_EQ(most.tremvik.bolRetMonitora(), false);

  Instance more;
  more.Import(file(32767));
  EXPECT_EQ(more.host.boxes, (Boxes{{Report("6 - Estouro", "", 32767), 64, "Atenção"}}));
  EXPECT_TRUE(more.tremvik.bolRetMonitora());

  Instance too_many;
  too_many.Import(file(32768));
  ExpectTold(too_many, "Erro 6 -  Estouro");
}

}  // namespace
}  // namespace tremvik::test
