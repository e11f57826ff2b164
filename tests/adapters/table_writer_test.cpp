#include "adapters/sqlite/table_writer.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "tests/adapters/support.h"

namespace tremvik {
namespace {

using test::ErrorOf;
using test::Rows;
using test::ScratchFolder;
using testing::ElementsAre;

class TableWriterTest : public testing::Test {
 protected:
  TableWriterTest() {
    base_.AcompanharLinha([this] { return ++line_; });
    Begin();
  }
  void Begin() {
    base_.Preparar();
    std::filesystem::rename(folder_.File("BDTemp.mdb"), folder_.File("BDTempPrf.fix"));
    EXPECT_EQ(base_.Abrir(folder_.path() + "\\BDTempPrf.fix"), 1);
  }
  void Put(Kind kind, std::initializer_list<std::pair<std::string_view, std::string_view>> fields) {
    TableWriter writer(base_, kind);
    for (const auto& [name, text] : fields)
      writer.Campo(name, std::string(text));
    writer.Gravar();
  }
  std::vector<std::string> Ended(std::string_view sql) {
    base_.Encerrar();
    return Rows(*base_.Ended(), sql);
  }

  ScratchFolder scratch_;
  ComponentFolder folder_{scratch_.path()};
  TemporaryDatabase base_{folder_};
  int line_ = 1;
};

TEST_F(TableWriterTest, FieldsBecomeTypedColumns) {
  Put(Kind::kCr05, {{"Ref", "201203"},
                    {"RefInicial", "000000"},
                    {"IE", "110.042.490.114"},
                    {"Q07", "0003"},
                    {"Q10", " 12"},
                    {"ICMSFixPer", "1.234.567,89"},
                    {"SaldoCredPeriodoAnt", "0,05"}});
  Put(Kind::kCr05, {{"Ref", "20A203"}, {"ICMSFixPer", "12"}, {"SaldoCredPeriodoAnt", "-1,00"}});
  Put(Kind::kCr07, {{"Data", "2012/04/05"}, {"Valor", "9.999.999.999.999,99"}, {"PrópriaOuST", "1"}});
  Put(Kind::kCr20, {});
  Put(Kind::kCr26, {{"DataInicio", "20/03/2012"}, {"DataFim", ""}, {"NF", "000000012"}});
  EXPECT_THAT(Ended("SELECT linha, ie, referencia, typeof(referencia_inicial), q07, typeof(q07), q10, "
                    "icms_fix_per, icms_fix_per_centavos, saldo_cred_periodo_ant_centavos FROM declaracao"),
              ElementsAre("2|110.042.490.114|2012-03|null|3|integer| 12|1.234.567,89|123456789|5",
                          "3||20A203|null||null||12||-100"));
  EXPECT_THAT(Rows(*base_.Ended(), "SELECT * FROM pagamento"),
              ElementsAre("2|4|1|9.999.999.999.999,99|999999999999999|2012-04-05"));
  EXPECT_THAT(Rows(*base_.Ended(),
                   "SELECT linha, ocorrencia_linha, data_inicio, data_fim, nf FROM ocorrencia_substituto"),
              ElementsAre("6|5|2012-03||12"));
}

TEST_F(TableWriterTest, DetailsBelongToTheRecordBefore) {
  EXPECT_EQ(ErrorOf([&] { Put(Kind::kCr07, {}); }), 5) << "no header yet";
  Put(Kind::kCr05, {});
  Put(Kind::kCr10, {});
  Put(Kind::kCr14, {});
  Put(Kind::kCr18, {});
  Put(Kind::kCr10, {});
  Put(Kind::kCr14, {{"Registro", "14á"}});
  Put(Kind::kCr05, {});
  EXPECT_EQ(ErrorOf([&] { Put(Kind::kCr14, {}); }), 5) << "the CFOP was the last declaration's";
  EXPECT_THAT(Ended("SELECT declaracao_id, linha, cfop_linha, registro FROM interestadual"),
              ElementsAre("1|5|4|", "1|8|7|14á"));
  EXPECT_THAT(Rows(*base_.Ended(), "SELECT linha, interestadual_linha FROM zona_franca"), ElementsAre("6|5"));
}

TEST_F(TableWriterTest, WrongUseIsAnErrorAndTheNextRecordIsClean) {
  TableWriter writer(base_, Kind::kCr05);
  EXPECT_EQ(ErrorOf([&] { writer.Campo("Nada", "x"); }), 5);
  writer.Campo("IE", "1");
  EXPECT_EQ(ErrorOf([&] { writer.Campo("IE", "2"); }), 5);
  writer.Campo("CNPJ", "3");
  writer.Gravar();
  EXPECT_THAT(Ended("SELECT typeof(ie), cnpj FROM declaracao"), ElementsAre("null|3"));
  base_.Encerrar();
  EXPECT_EQ(ErrorOf([&] { writer.Gravar(); }), 3420) << "the database is closed";
  Begin();
  EXPECT_EQ(base_.Ended(), nullptr);
  EXPECT_THAT(Ended("SELECT * FROM declaracao"), testing::IsEmpty()) << "a new run begins empty";
}

}  // namespace
}  // namespace tremvik
