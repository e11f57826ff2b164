// What an instance keeps from one declaration, and from one run, to the next.
#include <gtest/gtest.h>

#include "records/cfop.h"
#include "records/declaration.h"
#include "tests/support/cases.h"

namespace tremvik::test {
namespace {

// The validators of one declaration at work, their state in sight.
class Declaration : Prompter {
 public:
  explicit Declaration(const FileBuilder& file) {
    host_.files["f"] = file.Bytes();
    reader_.Open(1, "f");
    reader_.Next(records.RegistroMestre);
    reader_.Next(records.RegistroDeclaracao);
  }
  Verdict Validate() { return ValidarDeclaracao(pass_, headers_, host_); }
  Verdict ValidateCfops() { return ValidarCR10(pass_); }

  Registros records;
  EstadoDeclaracao state;

 private:
  Verdict Perguntar(Refusal /*question*/) override { return Accepted; }

  MemoryHost host_;
  std::int16_t line_ = 0;
  std::string path_;
  BlockReader reader_{host_, line_};
  TabelasFixas tables_{host_, host_};
  Components components_{host_, path_};
  EstadoCabecalhos headers_;
  Pass pass_{reader_, records, state, tables_, components_, *this};
};

TEST(State, QuantitiesAfterADeclaration) {
  Declaration declaration(FileBuilder("05 07*2 10 20 30 31"));
  ASSERT_FALSE(declaration.Validate());
  EXPECT_EQ(declaration.state.QtdeCR07, 2);  // the only one that stays
  EXPECT_EQ(declaration.state.QtdeCR10, 0);
  EXPECT_EQ(declaration.state.QtdeCR20, 0);
  EXPECT_EQ(declaration.state.QtdeCR30, 0);
  EXPECT_EQ(declaration.state.QtdeCR31, 0);
  EXPECT_EQ(declaration.state.ChaveDeclaracao, "110042490101201203");
}

TEST(State, SumsOfCfopDetails) {
  constexpr std::string_view kSales = "5131400";
  struct Sum {
    std::string_view ref, cfop, activity;
    bool inward, outward;
    int family;  // the one of four that the CFOP belongs to, -1 for none
  };
  constexpr Sum kSums[] = {
      {"201203", "1101", "", true, false, -1},       {"201203", "3101", "", false, false, -1},
      {"201203", "5101", "", false, true, -1},       {"201203", "7105", "", false, true, -1},
      {"201203", "8101", "", false, false, -1},      {"201203", "5101", kSales, false, true, 0},
      {"201203", "5104", "5524701", false, true, 0}, {"201203", "5105", kSales, false, true, -1},
      {"201203", "5351", "", false, true, 1},        {"201203", "7399", "", false, true, 1},
      {"201203", "5400", "", false, true, -1},       {"201203", "5349", "", false, true, 2},
      {"201203", "5251", "", false, true, 3},        {"201203", "5153", "", false, true, 3},
      {"201203", "6153", "", false, true, 3},        {"201203", "6154", "", false, true, -1},
      {"200301", "5153", "", false, true, 3},        {"200301", "5101", kSales, false, true, 0},
      {"200212", "511", kSales, false, true, 0},     {"200212", "515", kSales, false, true, 0},
      {"200212", "513", kSales, false, true, -1},    {"200212", "563", "", false, true, 1},
      {"200212", "553", "", false, true, 2},         {"200212", "546", "", false, true, 3},
  };
  for (const auto& [ref, cfop, activity, inward, outward, family] : kSums) {
    SCOPED_TRACE(std::string(ref) + " " + std::string(cfop));
    FileBuilder file(cfop.starts_with('6') ? "05 10 14 30" : "05 10 30");
    file.With("05.Ref", ref).With("10.CFOP", std::string(cfop) + std::string(6 - cfop.size(), '0'));
    file.Edit("10.BaseCálculo=100; 10.Imposto=1; 10.IsentasNãoTrib=20; 10.Outras=3; 10.OutrosImpostos=9");
    if (!activity.empty()) file.With("05.CNAE", activity);
    Declaration declaration(file);
    declaration.state.QtdeCR10 = 1;
    ASSERT_FALSE(declaration.ValidateCfops());
    const Acumuladores& sums = declaration.state.acumuladores;
    EXPECT_EQ(sums.SomaEntradasCR10, inward ? 123 : 0);
    EXPECT_EQ(sums.SomaSaidasCR10, outward ? 123 : 0);
    for (int i = 0; i < 4; ++i)
      EXPECT_EQ(sums.SomaDipamCR10.at(static_cast<std::size_t>(i)), i == family ? 123 : 0);
  }
  Declaration transport(FileBuilder("05 10 30").With("05.Ref", "200801").With("10.CFOP", "536000"));
  transport.state.QtdeCR10 = 1;
  transport.state.acumuladores.SomaSaidasCR10 = 5;
  ASSERT_FALSE(transport.Validate());
  EXPECT_EQ(transport.state.acumuladores.SomaSaidasCR10, 0);  // zeroed before each declaration
}

// From 200801 on, 5360 counts both as transport and as energy.
TEST(State, ACfopOfTwoFamilies) {
  Declaration declaration(FileBuilder("05 10 30").Edit("05.Ref=200801; 10.CFOP=536000; 10.Outras=7"));
  ASSERT_FALSE(declaration.Validate());
  EXPECT_EQ(declaration.state.acumuladores.SomaDipamCR10, (std::array<double, 4>{0, 7, 0, 7}));
}

// One instance serves one run: a second one goes on with the headers and the count of the first.
TEST(State, ASecondRunOfAnInstance) {
  Instance again;
  const std::string file = FileBuilder("05 07").Bytes();
  again.Import(file);
  EXPECT_TRUE(again.Succeeded());
  again.host.files["C:\\App\\BDTemp.mdb"] = "";
  again.Import(file);
  EXPECT_EQ(again.host.boxes.back().text, Report("Tabela 2, CR=05, Campo - IE_x_Ref", "Duplicado ou fora de seqüência. Posição 3_x_18", 2));

  Instance later;
  later.Import(file);
  later.host.files["C:\\App\\BDTemp.mdb"] = "";
  later.Import(FileBuilder("05").With("05.Ref", "201204").Bytes());
  EXPECT_EQ(later.host.boxes.back().text, "Tabela 01, CR=01, Campo - Q05\r\nInconsistente, Posição 27");
  EXPECT_TRUE(later.tremvik.bolRetMonitora());
}

// The buffers live as long as the instance too: what a short read leaves is the run's before.
TEST(State, BuffersOfTheRunBefore) {
  Instance payment;
  payment.Import(FileBuilder("05 07").Bytes());
  payment.host.files["C:\\App\\BDTemp.mdb"] = "";
  payment.Import(FileBuilder("05 07").Edit("05.Ref=201204; 07.Data=20120401; cut=2").Bytes());
  EXPECT_EQ(payment.host.boxes.back().text, Report("Tabela 2, CR=05 Campo - Q07", "inconsistente, Posição 114", 3));

  Instance master;  // whose separators stand in the buffer already: the run ends without a word
  master.Import(FileBuilder("05").Bytes());
  master.host.files["C:\\App\\BDTemp.mdb"] = "";
  master.host.third_opening = FileBuilder("05").Record(1).substr(0, 30);
  master.Import(FileBuilder("05").Bytes());
  EXPECT_EQ(master.host.boxes.size(), 1U);
  EXPECT_FALSE(master.tremvik.bolRetMonitora());
  EXPECT_EQ(master.tremvik.outcome().estado, Outcome::Estado::kSilencio);
  EXPECT_EQ(master.host.open_files(), 0U);
}

}  // namespace
}  // namespace tremvik::test
