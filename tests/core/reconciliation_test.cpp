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

struct Counted {
  std::string_view kinds, edits, differ;  // the kinds told, in this order
};

TEST(Reconciliation, KindsThatDiffer) {
  constexpr Counted kCases[] = {
      {"05 07 10 14 18 20 25 30 31", "", ""},
      {"05", "01.Q05=2", "05"},
      {"05*2", "01.Q05=1", "05"},
      {"05 07", "05.Q07=0", "07"},
      {"05 10", "05.Q10=2", "10"},
      {"05 10 14", "10.Q14=0", "14"},
      {"05 10 14 18", "14.Q18=2", "18"},
      {"05 20", "05.Q20=9999", "20"},
      {"05 20 25", "20.Q25=0", "25"},
      {"05 20 26", "20.Q26=2", "26"},
      {"05 20 27", "20.Q27=0", "27"},
      {"05 20 28", "20.Q28=2", "28"},
      {"05 30", "05.Q30=0", "30"},
      {"05 31", "05.Q31=0", "31"},
      // Several in one box, in the order of the codes.
      {"05 07 30", "05.Q07=2; 05.Q30=2", "07 30"},
      {"05 07 10 14 18 20 25 30 31",
       "01.Q05=9; 05.Q07=9; 05.Q10=9; 10.Q14=9; 14.Q18=9; 05.Q20=9; 20.Q25=9; 20.Q26=9;"
       "20.Q27=9; 20.Q28=9; 05.Q30=9; 05.Q31=9",
       "05 07 10 14 18 20 25 26 27 28 30 31"},
      // Once for each kind, and one parent's surplus is not another's shortfall...
      {"05 10 05 10*2", "05.Q10=2; 05#2.Q10=1", "10"},
      {"05 10 14 10 14*2", "10.Q14=2; 10#2.Q14=1", "14"},
      {"05 10 14 18 14 18*2", "14.Q18=2; 14#2.Q18=1", "18"},
      {"05 20 25 20 25*2", "20.Q25=2; 20#2.Q25=1", "25"},
      // ... but for exports, which are compared over the whole file.
      {"05 31 05 31*2", "05.Q31=2; 05#2.Q31=1", ""},
      // Details before their parent belong to the one before.
      {"05 25 20", "", "25"},
      {"07 05", "", "07"},
      {"05 14 10", "", "14"},
      // What is no number counts as far as it is one.
      {"05 07*2", "05.Q07=0002", ""},
      {"05", "05.Q07=000G", ""},
      {"05 07", "05.Q07=1G00", ""},
  };
  for (const auto& [kinds, edits, differ] : kCases) {
    SCOPED_TRACE(std::string(kinds) + " | " + std::string(edits));
    Instance run;
    run.host.files["f"] = FileBuilder(kinds).Edit(edits).Bytes();
    EXPECT_EQ(run.tremvik.CompararTotais("f"), !differ.empty());
    EXPECT_EQ(run.host.open_files(), 0U);
    EXPECT_EQ(run.host.places.size(), Split(differ, ' ').size());
    if (differ.empty()) {
      EXPECT_EQ(run.host.log, (std::vector<std::string>{"Progresso", "Open 1 f", "Close 1", "Progresso"}));
      continue;
    }
    ASSERT_EQ(run.host.boxes.size(), 1U);
    EXPECT_EQ(run.host.boxes.front().text, Differs(differ));
    EXPECT_EQ(run.host.boxes.front().style, 16);
    EXPECT_EQ(run.host.boxes.front().title, "Atenção");
    EXPECT_EQ(run.host.log.back(), "Progresso");
    EXPECT_EQ(run.host.log.at(run.host.log.size() - 2), "Caixa");
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
  run.host.files["f"] = FileBuilder("05 07 01 07").With("05.Q07", "9").Bytes();
  EXPECT_TRUE(run.tremvik.CompararTotais("f"));
  ASSERT_EQ(run.host.boxes.size(), 1U);
  EXPECT_EQ(run.host.boxes.front().text, "Informado mais de um Registro mestre CR=01");
  EXPECT_EQ(run.host.boxes.front().style, 16);
  EXPECT_EQ(run.host.boxes.front().title, "Atenção");
  EXPECT_EQ(run.tremvik.NroLinha(), 4);
  EXPECT_EQ(run.host.log, (std::vector<std::string>{"Progresso", "Open 1 f", "Inconsistência 4 01.CR",
                                                    "Caixa", "Close 1"}));
}

TEST(Reconciliation, AnUnknownCodeGoesTheCommonWay) {
  Instance run;
  run.host.files["f"] = FileBuilder("05").Bytes() + "9\xE7" + "\r\n";
  EXPECT_TRUE(run.tremvik.CompararTotais("f"));
  ASSERT_EQ(run.host.boxes.size(), 1U);
  EXPECT_EQ(run.host.boxes.front().text, Report("CR = 9ç Inconsistente, Posição 1", "", 3));
  EXPECT_EQ(run.host.boxes.front().style, 0);
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
  ASSERT_EQ(run.host.boxes.size(), 1U);
  EXPECT_EQ(run.host.boxes.front().text, Report("6 - Estouro", "", 5));
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
