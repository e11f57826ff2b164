// Quantities announced against records counted.
#include <gtest/gtest.h>

#include "tests/support/cases.h"

namespace tremvik::test {
namespace {

std::string Differs(std::string_view codes) {
  std::string text;
  for (const std::string_view code : Split(codes, ' ')) {
    text.append("Quantidade de registros CR=").append(code).append(" informado diverge do apurado.\r\n");
  }
  return text;
}

TEST(Reconciliation, KindsThatDiffer) {
  for (const auto& [where, cells] : ReadTable("quantities.txt", 3)) {
    SCOPED_TRACE(where);
    const std::string& differ = cells[2];
    Instance run;
    run.host.files["f"] = FileBuilder(cells[0]).Edit(cells[1]).Bytes();
    EXPECT_EQ(run.tremvik.CompararTotais("f"), !differ.empty());
    EXPECT_EQ(run.host.open_files(), 0U);
    EXPECT_EQ(run.host.places.size(), Split(differ, ' ').size());
    if (differ.empty()) {
      EXPECT_EQ(run.host.log, (std::vector<std::string>{"Progresso", "Open 1 f", "Close 1", "Progresso"}));
      continue;
    }
    EXPECT_EQ(run.host.boxes, (Boxes{{Differs(differ), 16, "Atenção"}}));
    EXPECT_EQ(Tail(run.host.log, 2), (std::vector<std::string>{"Caixa", "Progresso"}));
  }
}

TEST(Reconciliation, EndsTheRun) {
  Instance run;
  run.Import(FileBuilder("05 07").With("05.Q07", "2").Bytes());
  EXPECT_EQ(run.host.boxes.front().text, Differs("07"));
  EXPECT_TRUE(run.tremvik.bolRetMonitora());
  EXPECT_EQ(run.tremvik.NroLinha(), 3);
  EXPECT_EQ(run.tremvik.Mensagem(), "");
  const std::vector<std::string> log = {
      "Open 1 entrada.txt",      "Close 1", "Progresso", "Open 1 entrada.txt", "Close 1",
      "Inconsistência 2 05.Q07", "Caixa",   "Progresso"};
  EXPECT_EQ(run.host.log, log);
}

TEST(Reconciliation, ASecondMasterRecordEndsThePass) {
  Instance run;
  run.host.files["f"] = FileBuilder("01 05 07 01 07").With("05.Q07", "9").Bytes();
  EXPECT_TRUE(run.tremvik.CompararTotais("f"));
  EXPECT_EQ(run.host.boxes, (Boxes{{"Informado mais de um Registro mestre CR=01", 16, "Atenção"}}));
  EXPECT_EQ(run.tremvik.NroLinha(), 4);
  EXPECT_EQ(run.host.log, (std::vector<std::string>{"Progresso", "Open 1 f", "Inconsistência 4 01.CR",
                                                    "Caixa", "Close 1"}));
}

TEST(Reconciliation, AnUnknownCodeGoesTheCommonWay) {
  Instance run;
  run.host.files["f"] = FileBuilder("05").Bytes() + "9\xE7" + "\r\n";
  EXPECT_TRUE(run.tremvik.CompararTotais("f"));
  EXPECT_EQ(run.host.boxes, (Boxes{{Report("CR = 9ç Inconsistente, Posição 1", "", 3), 0, ""}}));
  EXPECT_EQ(run.tremvik.Mensagem(), "CR = 9ç Inconsistente, Posição 1");
  EXPECT_EQ(run.host.places.front().position, 1);
  EXPECT_EQ(run.host.places.front().width, 2);
  const std::vector<std::string> log = {"Progresso", "Open 1 f", "Inconsistência 3 .CR", "Caixa", "Fechar",
                                        "Encerrar ", "Close 1"};
  EXPECT_EQ(run.host.log, log);
}

TEST(Reconciliation, LineEndsOfAnyKind) {
  for (const std::string_view end : {"\r\n", "\n", "\r"}) {
    FileBuilder file("05 07*2 20 25*2 31");
    std::string bytes;
    for (int line = 1; line <= file.Lines(); ++line) {
      bytes += file.Record(line).substr(0, file.Record(line).size() - 2);
      bytes += end;
    }
    for (const std::size_t cut : {std::size_t{0}, end.size()}) {
      Instance run;
      run.host.files["f"] = bytes.substr(0, bytes.size() - cut);
      EXPECT_FALSE(run.tremvik.CompararTotais("f"));
      EXPECT_EQ(run.tremvik.NroLinha(), file.Lines());
      EXPECT_TRUE(run.host.boxes.empty());
    }
  }
}

// The total of Q31 is a 16-bit number: three times 9999 and 2770 is the most.
TEST(Reconciliation, ExportsBeyondSixteenBits) {
  FileBuilder file("05*4");
  file.Edit("05.Q31=9999; 05#2.Q31=9999; 05#3.Q31=9999; 05#4.Q31=2770");
  Instance most;
  most.host.files["f"] = file.Bytes();
  EXPECT_TRUE(most.tremvik.CompararTotais("f"));
  EXPECT_EQ(most.host.boxes.front().text, Differs("31"));

  file.Edit("05#4.Q31=2771");
  Instance direct;
  direct.host.files["f"] = file.Bytes();
  EXPECT_THROW((void)direct.tremvik.CompararTotais("f"), RuntimeError);
  EXPECT_EQ(direct.host.open_files(), 0U);

  Instance run;
  run.Import(file.Bytes());
  EXPECT_EQ(run.host.boxes, (Boxes{{Report("6 - Estouro", "", 5), 0, ""}}));
  EXPECT_TRUE(run.tremvik.bolRetMonitora());
}

TEST(Reconciliation, FailuresOfTheHostCloseTheFile) {
  for (const std::string_view operation : {"Read", "Progresso"}) {
    Instance run;
    run.host.files["f"] = FileBuilder("05").Bytes();
    run.host.Fail(operation, 57);
    EXPECT_THROW((void)run.tremvik.CompararTotais("f"), RuntimeError);
    EXPECT_EQ(run.host.open_files(), 0U);
  }
}

}  // namespace
}  // namespace tremvik::test
