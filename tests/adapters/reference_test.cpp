#include <gmock/gmock.h>
#include <malloc.h>
#include <sys/stat.h>

#include <filesystem>

#include "adapters/local/component_folder.h"
#include "adapters/memory/memory_engine.h"
#include "adapters/sqlite/reference_engine.h"
#include "adapters/sqlite/reference_image.h"
#include "adapters/sqlite/reference_tables.h"
#include "tests/adapters/support.h"

namespace tremvik {
namespace {

using test::ErrorOf;
using test::Rows;
using test::ScratchFolder;
using test::WriteFile;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class ReferenceTest : public testing::Test {
 protected:
  std::string Path(std::string_view name) { return std::string(scratch_.path()).append("/").append(name); }
  Recordset& Query(std::string_view sql) {
    return engine_.OpenDatabase(folder_.path() + "\\tblFixas.fix").OpenRecordset(sql, kSnapshot);
  }
  bool Found(std::string_view sql) { return Query(sql).RecordCount() > 0; }
  // Both engines must say the same: the error's number, or the first text of the first row.
  static std::string AnswerOf(ReferenceEngine& engine, const std::string& path, std::string_view sql) {
    try {
      Recordset& rows = engine.OpenDatabase(path).OpenRecordset(sql, kSnapshot);
      if (rows.RecordCount() == 0) return "nothing";
      const auto column = sql.substr(7, sql.find(' ', 7) - 7);
      return "= " + std::string(rows.Field(column.substr(column.find('.') + 1)));
    } catch (const RuntimeError& error) {
      return std::to_string(error.number());
    }
  }
  void ExpectSame(std::string_view sql) {
    EXPECT_EQ(AnswerOf(memory_, "", sql), AnswerOf(engine_, folder_.path() + "\\tblFixas.fix", sql)) << sql;
  }
  void CopyData() {
    std::filesystem::create_directory(Path("dados"));
    std::filesystem::copy(DATA_DIR, Path("dados"));
  }
  /// Builds from the copied data with one file replaced.
  std::vector<std::string> BuildWith(std::string_view file, std::string_view text) {
    const std::string path = Path("dados/") + std::string(file);
    const std::string before = test::ReadFile(path);
    WriteFile(path, text);
    auto problems = ConstruirTabelas(Path("dados"), Path("tblFixas.fix"));
    WriteFile(path, before);
    return problems;
  }

  ScratchFolder scratch_;
  ComponentFolder folder_{scratch_.path()};
  SqliteReferenceEngine engine_{
      [this](std::string_view path) { return AbrirTabelas(folder_.Resolve(path)); }};
  MemoryReferenceEngine memory_;
};

TEST_F(ReferenceTest, DeliveredRowsBuildAndVerify) {
  ASSERT_THAT(ConstruirTabelas(DATA_DIR, Path("tblFixas.fix")), IsEmpty());
  EXPECT_THAT(VerificarTabelas(Path("tblFixas.fix")), IsEmpty());
  ConstruirTabelasPadrao(Path("padrao.fix"));
  for (const auto* const sql :
       {"SELECT * FROM tblTodosCFOPs", "SELECT * FROM tblQuadroCFOPs", "SELECT * FROM [tblQuadroOcorrências]",
        "SELECT * FROM [tblMunicípiosZFM_ALC]"}) {
    EXPECT_EQ(Rows(Path("tblFixas.fix"), sql), Rows(Path("padrao.fix"), sql)) << sql;
  }
}

TEST_F(ReferenceTest, AnswersTheQueriesOfTheSystem) {
  ConstruirTabelasPadrao(Path("tblFixas.fix"));
  EXPECT_TRUE(Found("Select CNAE From tblCNAEsRegimeDispensado Where CNAE = '5131400'"));
  EXPECT_TRUE(Found("Select Código From tblEstados Where Código = '35'"));
  EXPECT_FALSE(Found("Select Código From tblEstados Where Código = '99'"));
  EXPECT_TRUE(Found("Select CódMunicípio From tblMunicípiosZFM_ALC Where CódMunicípio = '1302603'"));
  EXPECT_TRUE(Found("Select Códmunicípio From tblmunicípios Where Códmunicípio = '3550308'"));
  EXPECT_TRUE(Found("Select código From tblcódigosdipam Where código = '1.1'"));
  EXPECT_TRUE(
      Found("Select CódSubItem From tblQuadroOcorrências Where CódSubItem = '002.23' and OpPróprias"));
  EXPECT_TRUE(
      Found("Select CódSubItem From tblQuadroOcorrências Where CódSubItem = '002.01' and NOT OpPróprias"));
  const auto cfop = [](std::string_view code, std::string_view condition) {
    return std::string("SELECT CFOP FROM tblTodosCFOPs WHERE CFOP = '")
        .append(code)
        .append("' and Conjunto ")
        .append(condition)
        .append(" AND GRUPO = 0");
  };
  EXPECT_TRUE(Found(cfop("1.12", "= '1'")));
  EXPECT_FALSE(Found(cfop("1.10", "= '1'"))) << "a heading";
  EXPECT_FALSE(Found(cfop("1.1", "= '1'"))) << "codes are texts";
  EXPECT_TRUE(Found(cfop("5.102", "= '2'")));
  EXPECT_TRUE(Found(cfop("5.102", "> '1'")));
  EXPECT_FALSE(Found(cfop("5.667", "= '2'")));
  EXPECT_TRUE(Found(cfop("5.667", "> '1'")));
  Recordset& sigla = Query("SELECT Sigla FROM tblEstados WHERE Código = '35'");
  EXPECT_EQ(sigla.Field("Sigla"), "SP");
  EXPECT_EQ(ErrorOf([&] { (void)sigla.Field("Nome"); }), 3265);
  const std::string descricao =
      "SELECT tblQuadroCFOPs.Descrição FROM tblQuadroCFOPs WHERE ((tblQuadroCFOPs.[Grupo 15]='1.12') OR "
      "(tblQuadroCFOPs.[Grupo 26]='1.12') OR (tblQuadroCFOPs.[Grupo 37]='1.12')) AND "
      "(tblQuadroCFOPs.Conjunto='1')";
  EXPECT_EQ(Query(descricao).Field("Descrição"), "Compra para comercialização");
}

TEST_F(ReferenceTest, FaultyQueriesHaveTheEnginesNumbers) {
  ConstruirTabelasPadrao(Path("tblFixas.fix"));
  const auto error = [&](std::string_view sql) { return ErrorOf([&] { Query(sql); }); };
  EXPECT_EQ(error("Select X From tblEstados Where Código = '35'"), 3061);
  EXPECT_EQ(error("Select Código From tblNada Where Código = '35'"), 3078);
  EXPECT_EQ(error("Select  From  Where  = '35'"), 3075);
  EXPECT_EQ(error("Select Código From tblEstados Where Código = '3'5'"), 3075);
  EXPECT_EQ(error("Select Código From tblEstados Where Código = '35' and "), 3075);
  EXPECT_EQ(error("Select Código From tblEstados; DROP TABLE tblEstados"), 3075);
  EXPECT_EQ(error(""), 3075);
  EXPECT_TRUE(Found("Select Código From tblEstados Where Código = '35'")) << "after a failure it goes on";
}

// Every code of every table, spoiled ones and ones with quotes, in every form of query that the rules make.
TEST_F(ReferenceTest, TheEngineInMemoryAnswersTheSame) {
  ConstruirTabelasPadrao(Path("tblFixas.fix"));
  std::vector<std::string> codes{"0", "'", "''", "'--", "a'b", "' or '1", "tblEstados", "99.99", "3.5.1"};
  for (const auto* const column :
       {"CFOP FROM tblTodosCFOPs", "CódSubItem FROM [tblQuadroOcorrências]",
        "CNAE FROM tblCNAEsRegimeDispensado", "Código FROM tblEstados", "[Grupo 37] FROM tblQuadroCFOPs"}) {
    for (const auto& row : Rows(Path("tblFixas.fix"), std::string("SELECT DISTINCT ") + column)) {
      if (!row.empty()) codes.push_back(row);
    }
  }
  ASSERT_GT(codes.size(), 1000U);
  for (const std::string& code : codes) {
    const auto in = [&](std::string_view k, std::string_view t, std::string_view further) {
      ExpectSame(std::string("Select ")
                     .append(k)
                     .append(" From ")
                     .append(t)
                     .append(" Where ")
                     .append(k)
                     .append(" = '")
                     .append(code)
                     .append("'")
                     .append(further));
    };
    in("CNAE", "tblCNAEsRegimeDispensado", "");
    in("Código", "tblEstados", "");
    in("CódSubItem", "tblQuadroOcorrências", " and OpPróprias");
    in("CódSubItem", "tblQuadroOcorrências", " and NOT OpPróprias");
    in("CFOP", "tblTodosCFOPs", " and Conjunto > '1' AND GRUPO = 0");
    for (const std::string_view conjunto : {"='1')", "='2')", "> '1')"}) {
      in("CFOP", "tblTodosCFOPs", std::string(" and (Conjunto").append(conjunto).append(" AND GRUPO = 0"));
      std::string sql = "SELECT tblQuadroCFOPs.Descrição FROM tblQuadroCFOPs WHERE (";
      for (const auto* const group : {"(tblQuadroCFOPs.[Grupo 15]='", "') OR (tblQuadroCFOPs.[Grupo 26]='",
                                      "') OR (tblQuadroCFOPs.[Grupo 37]='"})
        sql.append(group).append(code);
      ExpectSame(sql.append("')) AND (tblQuadroCFOPs.Conjunto").append(conjunto));
    }
  }
}

TEST_F(ReferenceTest, BuilderNamesFileAndLineAndKeepsTheOldDatabase) {
  CopyData();
  ConstruirTabelasPadrao(Path("tblFixas.fix"));
  const std::string before = test::ReadFile(Path("tblFixas.fix"));
  std::string wide_header("a");  // a look at all names for each of them would take minutes
  for (int i = 1; i < 300'000; ++i)
    wide_header += ",a";
  struct Case {
    std::string_view file, text, problem;
  };
  const Case cases[] = {
      {"tblEstados.csv", "Código,Sigla\n11,RO,x\n", "tblEstados.csv:2: a linha tem 3 campo(s)"},
      {"tblEstados.csv", "Código,Sigla\n11,RO\n\n", "tblEstados.csv:3: a linha tem 1 campo(s)"},
      {"tblEstados.csv", "Código;Sigla\n11;RO\n", "tblEstados.csv:1: falta a coluna 'Código'"},
      {"tblEstados.csv", "Código,Sigla,Código\n11,RO,11\n", "aparece mais de uma vez"},
      {"tblEstados.csv", "Código,Sigla\n", "tblEstados.csv:1: a tabela não tem nenhuma linha"},
      {"tblEstados.csv", "", "tblEstados.csv:1: falta a coluna 'Código'"},
      {"tblEstados.csv", "Código,Sigla\n11,\"R\nO\n", "tblEstados.csv:2: as aspas abertas"},
      {"tblEstados.csv", "Código,Sigla\n11,R\"O\"\n", "tblEstados.csv:2: aspas no meio"},
      {"tblEstados.csv", "Código,Sigla\n11,\"RO\"x\n", "tblEstados.csv:2: texto depois das aspas"},
      {"tblEstados.csv",
       "C\xF3"
       "digo,Sigla\n11,RO\n",
       "tblEstados.csv:1: o texto não está em UTF-8"},
      {"tblEstados.csv", "Código,Sigla\n11,RO\n1,AC\n", "tblEstados.csv:3: Código '1': Código deve ter dois"},
      {"tblEstados.csv", "Código,Sigla\n11,RO\n", "tem 1 linhas, tables.json diz 27"},
      {"tblTodosCFOPs.csv", "CFOP,Conjunto,GRUPO\n\"1.102\",2,0\n\n", "tblTodosCFOPs.csv:3"},
      {"tblTodosCFOPs.csv", "CFOP,Conjunto,GRUPO\n1.102,4,0\n", ":2: CFOP '1.102': Conjunto deve ser"},
      {"tblTodosCFOPs.csv", "CFOP,Conjunto,GRUPO\n1.102,1,0\n", "no Conjunto 1 o CFOP"},
      {"tblTodosCFOPs.csv", "CFOP,Conjunto,GRUPO\n1.102,2,x\n", "GRUPO deve ser um número inteiro"},
      {"tblQuadroCFOPs.csv",
       "Descrição,Grupo 15,Grupo 26,Grupo 37,Conjunto\n\"a\nb\",1.102,,,2\nc,2.102,,,2\n",
       "tblQuadroCFOPs.csv:4: Descrição 'c': Grupo 15 deve"},
      {"tblcodigosdipam.csv", "código\n1.11\n", "código deve ter de um a três"},
      {"tables.json", "{", "tables.json: não foi possível entender"},
      {"tblEstados.csv", "Código,Sigla\n11,RO\n12,AC\n11,RR\n",
       "tblEstados.csv:4: Código '11': há outra linha com"},
      {"tblQuadroOcorrencias.csv", "CódSubItem,OpPróprias,Descrição\n002.23,1,a\n002.23,0,b\n002.23,-1,c\n",
       "tblQuadroOcorrencias.csv:4: CódSubItem '002.23': há outra"},
      {"tblEstados.csv", "Código,Sigla\n11,\xC0\xAF\n", "tblEstados.csv:2: o texto não está em UTF-8"},
      {"tblEstados.csv", "Código,Sigla\n11,\xED\xA0\x80\n", "tblEstados.csv:2: o texto não está em UTF-8"},
      {"tblEstados.csv", wide_header, "tblEstados.csv: e mais 299992 problema(s)."},
  };
  for (const Case& c : cases) {
    const auto problems = BuildWith(c.file, c.text);
    EXPECT_THAT(problems, testing::Contains(HasSubstr(c.problem))) << c.text;
    ASSERT_TRUE(test::ReadFile(Path("tblFixas.fix")) == before) << c.text;
  }
  EXPECT_THAT(ConstruirTabelas(Path("nada"), Path("tblFixas.fix")), ElementsAre(HasSubstr("não existe")));
  const auto without_states = [&] { return ConstruirTabelas(Path("dados"), Path("x.fix")); };
  std::filesystem::remove(Path("dados/tblEstados.csv"));
  EXPECT_THAT(without_states(), ElementsAre(HasSubstr("tblEstados.csv: o arquivo não")));
  ASSERT_EQ(::mkfifo(Path("dados/tblEstados.csv").c_str(), 0600), 0);
  EXPECT_THAT(without_states(), ElementsAre(HasSubstr("tblEstados.csv: o arquivo não")));
  std::filesystem::remove(Path("dados/tblEstados.csv"));
  std::filesystem::create_directory(Path("dados/tblEstados.csv"));
  EXPECT_THAT(without_states(), ElementsAre(HasSubstr("tblEstados.csv: o arquivo não")));
  for (const auto& entry : std::filesystem::directory_iterator(scratch_.path())) {
    EXPECT_THAT(entry.path().filename().string(), testing::AnyOf("dados", "tblFixas.fix"));
  }
  EXPECT_EQ(ErrorOf([&] { ConstruirTabelasPadrao(Path("nada/tblFixas.fix")); }), 76);
}

TEST_F(ReferenceTest, AuthoritysOwnRowsNeedNoCounts) {
  CopyData();
  std::filesystem::remove(Path("dados/tables.json"));
  EXPECT_THAT(BuildWith("tblEstados.csv", "\xEF\xBB\xBFSigla,Código\r\n\"QZ\",77\r\n"), IsEmpty());
  EXPECT_THAT(Rows(Path("tblFixas.fix"), "SELECT Código, Sigla FROM tblEstados"), ElementsAre("77|QZ"));
}

TEST_F(ReferenceTest, RowsThatChangedAreNoAnswers) {
  const std::string file = Path("tblFixas.fix");
  const auto execute = [&](const char* sql) { sqlite::Connection(file, SQLITE_OPEN_READWRITE).Execute(sql); };
  const auto opened = [&] {
    const int error = ErrorOf([&] { (void)AbrirTabelas(file); });
    EXPECT_EQ(ErrorOf([&] { (void)AbrirImagem(test::ReadFile(file), file); }), error) << "from its bytes";
    return error;
  };
  ConstruirTabelasPadrao(file);
  EXPECT_EQ(opened(), 0);
  EXPECT_EQ(ErrorOf([&] { (void)AbrirImagem(test::ReadFile(file).substr(0, 1000), file); }), 3343);
  execute("UPDATE tblTodosCFOPs SET CFOP = '5.109' WHERE CFOP = '5.102'");
  EXPECT_EQ(opened(), 3343);
  EXPECT_THAT(VerificarTabelas(file), testing::Contains(HasSubstr("resumo não confere")));
  ConstruirTabelasPadrao(file);
  std::string bytes = test::ReadFile(file);
  bytes[bytes.size() / 2] ^= 1;
  WriteFile(file, bytes);
  EXPECT_EQ(opened(), 3343) << "one bit";
  ConstruirTabelasPadrao(file);
  execute("PRAGMA application_id = 0");  // as if made by other means
  EXPECT_EQ(opened(), 0);
  execute("ALTER TABLE tblEstados RENAME COLUMN Código TO Cod");
  EXPECT_EQ(opened(), 3061);
  execute("ALTER TABLE tblEstados RENAME TO outra");
  EXPECT_EQ(opened(), 3078);
  execute("CREATE VIEW tblEstados AS SELECT Cod AS Código, Sigla FROM outra");
  EXPECT_EQ(opened(), 3078);
  EXPECT_THAT(VerificarTabelas(file), testing::Contains("tblEstados: é uma visão, e não uma tabela."));
}

TEST_F(ReferenceTest, AnswersAreRememberedButNotAllForEver) {
  ConstruirTabelasPadrao(Path("tblFixas.fix"));
  const auto ask = [&](int first, int last) {
    for (int i = first; i < last; ++i)
      EXPECT_FALSE(Found("SELECT Sigla FROM tblEstados WHERE Código = 'x" + std::to_string(i) + "'"));
  };
  Recordset& open = Query("SELECT Sigla FROM tblEstados WHERE Código = '35'");
  ask(0, 4096);
  EXPECT_EQ(open.Field("Sigla"), "SP");
  EXPECT_EQ(&Query("SELECT Sigla FROM tblEstados WHERE Código = '35'"), &open);
  ask(4096, 8192);
  const auto full = mallinfo2().uordblks;
  ask(8192, 24'576);
  EXPECT_LT(mallinfo2().uordblks, full + (std::size_t{1} << 19U));
}

TEST_F(ReferenceTest, VerifyListsWhatIsWrong) {
  const std::string file = Path("tblFixas.fix");
  ConstruirTabelasPadrao(file);
  {
    sqlite::Connection database(file, SQLITE_OPEN_READWRITE);
    database.Execute(
        "DROP TABLE [tblmunicípios]; ALTER TABLE tblEstados RENAME COLUMN Sigla TO UF;"
        "DELETE FROM [tblcódigosdipam]; UPDATE tblTodosCFOPs SET Conjunto = '9' WHERE Conjunto = '3';"
        "DROP TABLE tblCNAEsRegimeDispensado; CREATE TABLE tblCNAEsRegimeDispensado (CNAE);"
        "INSERT INTO tblCNAEsRegimeDispensado VALUES (5131400)");
  }
  const auto problems = VerificarTabelas(file);
  for (const auto* const problem :
       {"tblmunicípios: a tabela não existe.", "tblEstados: falta a coluna 'Sigla'.",
        "tblcódigosdipam: a tabela não tem nenhuma linha.", "tblTodosCFOPs: e mais 156 problema(s).",
        "tblCNAEsRegimeDispensado: CNAE '5131400': CNAE deve ser um texto."}) {
    EXPECT_THAT(problems, testing::Contains(problem));
  }
  EXPECT_EQ(problems.size(), 4U + 11U + 1U) << "and the digest";
  EXPECT_EQ(ErrorOf([&] { (void)VerificarTabelas(Path("falta")); }), 3024);
}

}  // namespace
}  // namespace tremvik
