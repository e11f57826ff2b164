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
  BlockReader reader_{host_, line_};
  TabelasFixas tables_{host_, host_};
  Components components_{host_, host_};
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
  EXPECT_EQ(declaration.state.ChaveDeclaracao, "110042490114201203");
}

TEST(State, SumsOfCfopDetails) {
  for (const auto& [where, cells] : ReadTable("cfop_sums.txt", 4)) {
    SCOPED_TRACE(where);
    const auto sums = Split(cells[3], ' ');
    const auto expected = [&](std::string_view sum) { return std::ranges::count(sums, sum) > 0 ? 123 : 0; };
    FileBuilder file(cells[1].starts_with('2') || cells[1].starts_with('6') ? "05 10 14 30" : "05 10 30");
    file.With("05.Ref", cells[0])
        .With("10.CFOP", cells[1] + std::string(6 - cells[1].size(), '0'))
        .With("05.CNAE", cells[2]);
    file.Edit("10.BaseCálculo=100; 10.Imposto=1; 10.IsentasNãoTrib=20; 10.Outras=3; 10.OutrosImpostos=9");
    Declaration declaration(file);
    declaration.state.QtdeCR10 = 1;
    ASSERT_FALSE(declaration.ValidateCfops());
    const Acumuladores& found = declaration.state.acumuladores;
    EXPECT_EQ(found.SomaEntradasCR10, expected("entradas"));
    EXPECT_EQ(found.SomaSaidasCR10, expected("saidas"));
    for (std::size_t i = 0; i < 4; ++i)
      EXPECT_EQ(found.SomaDipamCR10.at(i), expected(std::to_string(i)));
  }
  Declaration again(FileBuilder("05 10 30"));
  again.state.acumuladores.SomaSaidasCR10 = 5;
  ASSERT_FALSE(again.Validate());
  EXPECT_EQ(again.state.acumuladores.SomaSaidasCR10, 0);  // zeroed before each declaration
}

// One instance serves one run: a second one goes on with the headers and the count of the first.
TEST(State, ASecondRunOfAnInstance) {
  Instance again;
  const std::string file = FileBuilder("05 07").Bytes();
  again.Import(file);
  EXPECT_TRUE(again.Succeeded());
  again.host.files["C:\\App\\BDTemp.mdb"] = "";
  again.Import(file);
  EXPECT_EQ(again.host.boxes.back().text,
            Report("Tabela 2, CR=05, Campo - IE_x_Ref", "Duplicado ou fora de seqüência. Posição 3_x_18", 2));

  Instance later;
  later.Import(file);
  later.host.files["C:\\App\\BDTemp.mdb"] = "";
  later.Import(FileBuilder("05").With("05.Ref", "201204").Bytes());
  EXPECT_EQ(later.host.boxes.back().text, "Tabela 01, CR=01, Campo - Q05\r\nInconsistente, Posição 27");
  EXPECT_TRUE(later.tremvik.bolRetMonitora());
}

// The temporary database's path is the host's: a new instance closes the one of the run before it.
TEST(State, TheTemporaryDatabaseOfTheRunBefore) {
  Instance first;
  first.Import(FileBuilder("05").Bytes());
  Tremvik second(first.host.host());
  second.ErroSair();
  EXPECT_EQ(first.host.log.back(), "Encerrar C:\\App\\BDTempPrf.fix");
}

// The buffers live as long as the instance too: what a short read leaves is the run's before.
TEST(State, BuffersOfTheRunBefore) {
  Instance payment;
  payment.Import(FileBuilder("05 07").Bytes());
  payment.host.files["C:\\App\\BDTemp.mdb"] = "";
  payment.Import(FileBuilder("05 07").Edit("05.Ref=201204; 07.Data=20120401; cut=2").Bytes());
  EXPECT_EQ(payment.host.boxes.back().text,
            Report("Tabela 2, CR=05 Campo - Q07", "inconsistente, Posição 114", 3));

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
