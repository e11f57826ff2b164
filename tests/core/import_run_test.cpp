// The import from end to end, and its ends.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "records/without_fields.h"
#include "tests/support/cases.h"
#include "tests/support/files.h"

namespace tremvik::test {
namespace {

using ::testing::ElementsAreArray;

constexpr std::string_view kBase = R"(C:\App\BDTempPrf.fix)";
const std::string kEncerrar = R"(Encerrar C:\App\BDTempPrf.fix)";

// All that a host sees of an accepted file with every kind, in order.
TEST(ImportRun, Success) {
  Instance run;
  run.host.files[std::string(kBase)] = "an old one";
  run.Import(FileBuilder("05 07 10 14 18 20 26 20 28 20 27 20 25 30 31")
                 .Edit("05.SaldoCredPeriodoAnt=5; 05.SemRegra=\xE7; 10.BaseCálculo=100000; 10.Imposto=25000")
                 .Bytes());
  std::vector<std::string> expected;
  for (const Row& row : ReadTable("success.txt", 1))
    expected.push_back(row.cells[0]);
  EXPECT_THAT(run.host.log, ElementsAreArray(expected));
  EXPECT_EQ(run.host.boxes,
            (Boxes{{"A importação foi concluída com sucesso!", 64, "Arquivo Pré-Formatado"}}));
  EXPECT_FALSE(run.tremvik.bolRetMonitora());
  EXPECT_EQ(run.tremvik.idxBanco(), 7);
  EXPECT_EQ(run.tremvik.database_name(), "Base do usuário");
  EXPECT_EQ(run.tremvik.NroLinha(), 17);
  EXPECT_EQ(run.tremvik.Mensagem(), "");
  EXPECT_EQ(run.host.files.count(R"(C:\App\BDTemp.mdb)"), 0U);
  EXPECT_EQ(run.host.open_databases, 0);
}

TEST(ImportRun, OtherFormsOfFields) {
  Instance run;
  run.tremvik.set_bolRetMonitora(true);  // left as it was by a success
  run.Import(
      FileBuilder("05 07 10 20 31")
          .Edit("05.RegTrib=02; 05.Ref=201208; 05.RefInicial=201207; 05.ICMSFixPer=100; 07.Data=20120801;"
                "31.RE=123456789012345; 20.CódSubItem=00399; 20.FLegal=art.  1; 20.Ocorrência=a\x80 b")
          .Bytes());
  EXPECT_TRUE(run.Succeeded());
  EXPECT_TRUE(run.tremvik.bolRetMonitora());
  EXPECT_THAT(run.host.log, testing::Contains("Existe 110.042.490.114 QZ 02 20/08/2012 20/07/2012"));
  EXPECT_THAT(run.host.log, testing::Contains("Gravar 31 RE=45/6789012345"));
  EXPECT_THAT(run.host.log,
              testing::Contains(testing::HasSubstr(" FLegal=art.  1 Ocorrência=a€ b Q25=0000")));
}

// A writer that reads no fields is given none, and a value that has no form is refused all the same.
TEST(ImportRun, WritersThatReadNoFields) {
  struct Dropper : Gravador {
    [[nodiscard]] bool LeCampos() const override { return false; }
    void CaminhoBase(std::string_view /*caminho*/) override {}
    void Campo(std::string_view nome, std::string_view /*texto*/) override { ADD_FAILURE() << nome; }
    void Gravar() override { ++written; }
    int written = 0;
  } writer;
  Record<Cr07> r;
  for (const auto& [valor, written] : {std::pair("000000000000123", 1), std::pair("00000000000012G", 1)}) {
    std::copy_n(valor, 15, r.block().begin() + Cr07::kValor.position - 1);
    try {
      GravarSemCampos<Cr07>(r, std::array{Cr07::kValor}, writer);
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.number(), 13);
    }
    EXPECT_EQ(writer.written, written) << valor;
  }
}

TEST(ImportRun, ProgressOfDeclarations) {
  const std::pair<std::string_view, int> cases[] = {{"05", 5},    {"05 07", 6},    {"05 10", 6},
                                                    {"05 20", 6}, {"05 30 31", 5}, {"05 07 10 20 30 31", 8},
                                                    {"05*3", 15}};
  for (const auto& [kinds, steps] : cases) {
    Instance run;
    run.Import(FileBuilder(kinds).Bytes());
    EXPECT_TRUE(run.Succeeded());
    EXPECT_EQ(std::ranges::count(run.host.log, "Progresso"), 2 + steps) << kinds;
  }
}

// An incomplete last header is no declaration: fewer were read than announced.
TEST(ImportRun, DeclarationsThatDifferFromTheAnnounced) {
  const std::tuple<std::string_view, std::string_view, int> cases[] = {
      {"05", "cut=1", 2}, {"05*2", "cut=2", 3}, {"05*2", "~01.Q05=1", 4}, {"05*2", "~cut=100", 3}};
  for (const auto& [kinds, edit, lines] : cases) {
    SCOPED_TRACE(edit);
    Instance run;
    FileBuilder file(kinds);
    if (!edit.starts_with('~')) file.Edit(edit);
    const std::string before = file.Bytes();
    if (edit.starts_with('~')) run.host.third_opening = file.Edit(edit.substr(1)).Bytes();
    run.Import(before);
    EXPECT_EQ(run.host.boxes,
              (Boxes{{"Tabela 01, CR=01, Campo - Q05\r\nInconsistente, Posição 27", 64, "Atenção"}}));
    EXPECT_TRUE(run.tremvik.bolRetMonitora());
    EXPECT_EQ(run.tremvik.outcome().estado, Outcome::Estado::kRecusado);
    EXPECT_EQ(run.tremvik.NroLinha(), lines);
    EXPECT_EQ(run.tremvik.Mensagem(), "");
    const std::vector<std::string> closing = {"Inconsistência 1 01.Q05", "Caixa", "Close 1", "Ponteiro 0"};
    EXPECT_EQ(Tail(run.host.log, 4), closing);
    EXPECT_EQ(std::ranges::count(run.host.log, "Fechar"), 0);
    EXPECT_EQ(std::ranges::count(run.host.log, kEncerrar), 0);
  }
}

TEST(ImportRun, TheHostsEmptyDatabaseIsMissing) {
  Instance run;
  run.host.files.clear();
  run.Import(FileBuilder("05").Bytes());
  // The master record, which sets style and title, is not read yet.
  EXPECT_EQ(run.host.boxes, (Boxes{{Report("53 - Arquivo não encontrado", "", 0), 0, ""}}));
  EXPECT_TRUE(run.tremvik.bolRetMonitora());
  EXPECT_EQ(run.tremvik.Mensagem(), "53 - Arquivo não encontrado");
  const std::vector<std::string> closing = {"Encerrar ", "Caixa", "Fechar", "Encerrar "};
  EXPECT_EQ(Tail(run.host.log, 4), closing);
}

struct Failing {
  std::string_view operation;
  int good = 0;  // calls that succeed before it
  int line = 0;  // the last one read, where it matters
};

// Told in one message with its number and words; nothing is thrown and no file stays open.
void CheckFailure(const Failing& failing, int number, std::string_view text) {
  SCOPED_TRACE(std::string(failing.operation) + " " + std::to_string(failing.good) + " " +
               std::to_string(number));
  Instance run;
  run.host.files[std::string(kBase)] = "an old one";
  run.host.Fail(failing.operation, number, failing.good);
  run.Import(FileBuilder("05 10").Bytes());
  ASSERT_EQ(run.host.boxes.size(), 1U);
  EXPECT_EQ(run.host.boxes.front().text, Report(text, "", run.tremvik.NroLinha()));
  EXPECT_TRUE(failing.line == 0 || run.tremvik.NroLinha() == failing.line);
  EXPECT_EQ(run.tremvik.Mensagem(), text);
  EXPECT_TRUE(run.tremvik.bolRetMonitora());
  const Outcome& outcome = run.tremvik.outcome();
  EXPECT_EQ(outcome.estado, Outcome::Estado::kErro);
  EXPECT_EQ(std::to_string(outcome.numero) + " - " + outcome.descricao, text);
  EXPECT_EQ(run.host.open_files(), 0U);
  EXPECT_EQ(run.host.open_databases, 0);
  EXPECT_EQ(std::ranges::count(run.host.log, "Fechar"), 1);
  EXPECT_EQ(std::ranges::count_if(run.host.log, [](const auto& l) { return l.starts_with("Encerrar"); }), 2);
}

TEST(ImportRun, EveryFailureOfTheHostIsTold) {
  constexpr Failing kFailing[] = {{"FreeFile", 1},
                                  {"Open", 1},
                                  {"Read", 2},
                                  {"Close", 1, 3},
                                  {"Progresso"},
                                  {"Progresso", 1, 3},
                                  {"Exists"},
                                  {"Delete"},
                                  {"Preparar"},
                                  {"GetSetting"},
                                  {"Rename"},
                                  {"Abrir"},
                                  {"FreeFile", 2},
                                  {"Open", 2},
                                  {"Read", 4, 1},
                                  {"ValidarIE", 0, 2},
                                  {"Existe", 0, 2},
                                  {"Gravar", 0, 2},
                                  {"OpenDatabase", 0, 3},
                                  {"OpenRecordset", 0, 3},
                                  {"Gravar", 1, 3},
                                  {"Progresso", 2, 2},
                                  {"Close", 2, 4},
                                  {"CriarGravador", 1, 3},
                                  {"CriarConsultaDeclaracoes", 0, 2},
                                  {"CriarValidadorDocumentos", 0, 2}};
  for (const Failing& failing : kFailing) {
    CheckFailure(failing, 75, "75 - Erro de acesso ao caminho/arquivo");
    CheckFailure(failing, 0, "5 - Chamada de procedimento ou argumento inválido");
  }
}

// The handler makes each of its steps whatever became of the one before.
TEST(ImportRun, FailuresWhileAFailureIsTold) {
  Instance closing;  // both the run and its clearing up
  closing.host.Fail("Gravar", 61);
  closing.host.Fail("Close", 57, 2);
  closing.host.Fail("Encerrar", 70);
  closing.Import(FileBuilder("05").Bytes());
  EXPECT_EQ(closing.host.boxes, (Boxes{{Report("61 - Disco cheio", "", 2), 64, "Atenção"}}));
  EXPECT_TRUE(closing.tremvik.bolRetMonitora());
  EXPECT_EQ(std::ranges::count(closing.host.log, kEncerrar), 2);
  EXPECT_EQ(std::ranges::count(closing.host.log, "Fechar"), 1);
  EXPECT_EQ(closing.host.open_files(), 0U);

  Instance no_component;
  no_component.host.Fail("CriarBancoTemporario", 429);
  no_component.Import(FileBuilder("05").Bytes());
  EXPECT_EQ(no_component.host.boxes,
            (Boxes{{Report("429 - O componente ActiveX não pode criar o objeto", "", 0), 0, ""}}));

  Instance no_box;
  no_box.host.Fail("MsgBox", 5);
  no_box.Import(FileBuilder("05").Bytes());
  EXPECT_TRUE(no_box.tremvik.bolRetMonitora());
  EXPECT_EQ(no_box.tremvik.Mensagem(), "5 - Chamada de procedimento ou argumento inválido");
  EXPECT_EQ(no_box.host.open_files(), 0U);

  Instance refused;  // the closing call after a refusal
  refused.host.Fail("Encerrar", 70);
  refused.Import(FileBuilder("05").With("05.Tipo", "09").Bytes());
  EXPECT_EQ(refused.host.boxes,
            (Boxes{{Report("Tabela 2, CR=05, Campo - Tipo", "Inconsistente, Posição 50 ", 2), 64, "Atenção"},
                   {Report("70 - Permissão negada", "", 2), 64, "Atenção"}}));
  EXPECT_EQ(refused.host.open_files(), 0U);

  Instance success;  // and after a success
  success.host.Fail("Encerrar", 70);
  success.Import(FileBuilder("05").Bytes());
  ASSERT_EQ(success.host.boxes.size(), 2U);
  EXPECT_EQ(success.host.boxes.back().text, Report("70 - Permissão negada", "", 3));
  EXPECT_TRUE(success.tremvik.bolRetMonitora());
}

// Calls the instance from within its events; what such a call does there must not be seen.
struct Caller final : MemoryHost {
  void Progresso() override {
    MemoryHost::Progresso();
    Call();
  }
  void Fechar() override {
    MemoryHost::Fechar();
    Call();
  }
  void Call() {
    if (instance == nullptr) return;
    for (const auto& call : std::initializer_list<std::function<void(Tremvik&)>>{
             [](Tremvik& t) { t.Monitora("entrada.txt"); },
             [](Tremvik& t) { t.CompararTotais("entrada.txt"); }, [](Tremvik& t) { t.ErroSair(); }}) {
      EXPECT_EQ(ErrorOf([&] { return call(*instance), 0; }), 5);
    }
    ++calls;
  }
  Tremvik* instance = nullptr;
  int calls = 0;
};

TEST(ImportRun, ACallWithinACallIsRefused) {
  for (const std::string_view tipo : {"01", "09"}) {
    Caller plain, calling;
    for (Caller* const host : {&plain, &calling}) {
      host->files["entrada.txt"] = FileBuilder("05 07 10").With("05.Tipo", tipo).Bytes();
      Tremvik tremvik(host->host());
      if (host == &calling) host->instance = &tremvik;
      tremvik.Monitora("entrada.txt");
      EXPECT_EQ(tremvik.outcome().estado,
                tipo == "01" ? Outcome::Estado::kAceito : Outcome::Estado::kRecusado);
      EXPECT_EQ(tremvik.NroLinha(), tipo == "01" ? 5 : 2);
      tremvik.ErroSair();  // its turn again
    }
    EXPECT_EQ(calling.log, plain.log);
    EXPECT_EQ(calling.boxes, plain.boxes);
    EXPECT_GT(calling.calls, 3);
  }
}

#ifndef NDEBUG
TEST(ImportRunDeathTest, DestroyedWithinACall) {
  struct : MemoryHost {
    void Progresso() override { instance.reset(); }
    std::unique_ptr<Tremvik> instance;
  } host;
  host.instance = std::make_unique<Tremvik>(host.host());
  host.files["f"] = FileBuilder("05").Bytes();
  EXPECT_DEATH((void)host.instance->CompararTotais("f"), "destroyed within a call");
}
#endif

TEST(ImportRun, ARefusedFileStopsWhereTheFaultIs) {
  Instance run;
  run.Import(FileBuilder("05 07*2 10 20").With("07#2.Valor", "G").Bytes());
  EXPECT_TRUE(run.tremvik.bolRetMonitora());
  EXPECT_EQ(run.tremvik.NroLinha(), 4);
  EXPECT_EQ(run.tremvik.Mensagem(), "Tabela 20, CR=07, Campo - Valor\r\nInconsistente, Posição 4");
  EXPECT_EQ(std::ranges::count_if(run.host.log, [](const auto& l) { return l.starts_with("Gravar "); }), 2);
  EXPECT_TRUE(run.host.queries.empty());
}

}  // namespace
}  // namespace tremvik::test
