#include "adapters/sqlite/embedded_host.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "adapters/sqlite/declaration_store.h"
#include "tests/adapters/support.h"

namespace tremvik {
namespace {

using test::ErrorOf;
using test::Rows;
using test::ScratchFolder;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::string_view kIE = "110.042.490.114";
const Outcome kAccepted{Outcome::Estado::kAceito};

/// One run of the component over an embedded host, made of the calls that the component makes.
class HostRun {
 public:
  explicit HostRun(const std::string& folder)
      : embedded_({folder, Modo::kImportar, folder}, nobody_, nobody_, nobody_),
        path_(folder + "\\BDTempPrf.fix") {
    embedded_.AcompanharLinha([this] { return ++line_; });
  }

  bool Held(std::string_view reference) {
    return components_.consulta().Existe(kIE, "QZ", "01", reference, "");
  }
  void Begin() {
    if (host_.files.Exists(path_)) host_.files.Delete(path_);
    components_.banco().Preparar();
    host_.files.Rename(host_.application.AppPath() + "\\BDTemp.mdb", path_);
    components_.banco().Abrir(path_);
  }
  void Write(Kind kind, std::initializer_list<std::pair<std::string_view, std::string_view>> fields) {
    for (const auto& [name, text] : fields)
      components_.gravador(kind).Campo(name, text);
    components_.gravador(kind).Gravar();
  }
  /// A declaration with one record of every kind, and `payments` payments.
  void Declare(std::string_view reference, int payments = 1) {
    Write(Kind::kCr05, {{"IE", kIE}, {"RegTrib", "01"}, {"Ref", reference}});
    for (int i = 0; i < payments; ++i)
      Write(Kind::kCr07, {{"Valor", "1,00"}});
    for (const auto kind : {Kind::kCr10, Kind::kCr14, Kind::kCr18, Kind::kCr20, Kind::kCr25, Kind::kCr26,
                            Kind::kCr27, Kind::kCr28, Kind::kCr30, Kind::kCr31}) {
      Write(kind, {});
    }
  }
  void End() {
    components_.banco().Encerrar(path_);
    components_.banco().Encerrar("");
  }
  EmbeddedHost& embedded() { return embedded_; }
  Host& host() { return host_; }

 private:
  test::Nobody nobody_;
  EmbeddedHost embedded_;
  int line_ = 1;
  std::string path_;
  Host host_ = embedded_.host();
  Components components_{host_.components, host_.application};
};

class EmbeddedHostTest : public testing::Test {
 protected:
  std::string Path(std::string_view name) { return folder_ + "/" + std::string(name); }
  void Import(std::string_view reference) {
    HostRun run(folder_);
    run.Begin();
    run.Declare(reference);
    run.End();
    run.embedded().Consolidar(kAccepted, "arquivo.txt");
  }
  [[nodiscard]] std::vector<std::string> References() const {
    std::vector<std::string> references;
    for (const auto& held : DeclarationStore(folder_).Listar())
      references.push_back(held.referencia);
    return references;
  }
  [[nodiscard]] std::vector<std::string> Files() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
      names.push_back(entry.path().filename().string());
    }
    std::ranges::sort(names);
    return names;
  }

  ScratchFolder scratch_;
  std::string folder_ = scratch_.path() + "/pasta nova";
};

TEST_F(EmbeddedHostTest, AnAcceptedRunMovesIntoTheStoreWithAllItsRecords) {
  EXPECT_THAT(DeclarationStore(folder_).Listar(), IsEmpty());
  {
    HostRun run(folder_);
    EXPECT_EQ(ErrorOf([&] { run.embedded().Consolidar(kAccepted, "x"); }), 5) << "nothing has run";
    EXPECT_FALSE(run.Held("20/03/2012"));
    run.Begin();
    run.Declare("201203", 3);
    run.Declare("201204");
    EXPECT_EQ(ErrorOf([&] { run.embedded().Consolidar(kAccepted, "x"); }), 5) << "the run has not ended";
    run.End();
    run.embedded().Consolidar(kAccepted, "março.txt");
    EXPECT_TRUE(run.Held("20/03/2012"));
    EXPECT_FALSE(run.Held("20/05/2012"));
    EXPECT_EQ(ErrorOf([&] { run.embedded().Consolidar(kAccepted, "x"); }), 5) << "it is taken already";
  }
  Import("201205");
  EXPECT_THAT(Files(), ElementsAre("tblFixas.fix", "tremvik.db", "tremvik.lock"));
  const auto held = DeclarationStore(folder_).Listar();
  ASSERT_EQ(held.size(), 3U);
  EXPECT_EQ(held[0].referencia, "2012-03");
  EXPECT_EQ(held[0].arquivo, "março.txt");
  EXPECT_THAT(held[0].registros, ElementsAre(1, 3, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1));
  EXPECT_EQ(held[2].arquivo, "arquivo.txt");
  const auto records = DeclarationStore(folder_).Registros(kIE, "2012-04");
  ASSERT_EQ(records.size(), kStoredKinds.size());
  EXPECT_THAT(records[2].colunas, testing::Contains("valor_contabil_centavos"));
  EXPECT_THAT(DeclarationStore(folder_).Registros(kIE, "2012-06"), IsEmpty());
  const std::string store = Path("tremvik.db");
  EXPECT_THAT(Rows(store, "PRAGMA foreign_key_check"), IsEmpty());
  EXPECT_THAT(
      Rows(store,
           "SELECT d.referencia, z.linha, i.linha, c.linha FROM zona_franca z "
           "JOIN interestadual i ON i.declaracao_id = z.declaracao_id AND i.linha = z.interestadual_linha "
           "JOIN cfop c ON c.declaracao_id = i.declaracao_id AND c.linha = i.cfop_linha "
           "JOIN declaracao d ON d.id = c.declaracao_id ORDER BY 1"),
      ElementsAre("2012-03|8|7|6", "2012-04|20|19|18", "2012-05|6|5|4"));
  EXPECT_THAT(Rows(store, "SELECT arquivo, declaracoes, registros FROM importacao"),
              ElementsAre("março.txt|2|26", "arquivo.txt|1|12"));
}

TEST_F(EmbeddedHostTest, WhatIsNotConsolidatedLeavesNothing) {
  Import("201203");
  {
    HostRun run(folder_);  // refused: the database is ended, never moved
    run.Begin();
    run.Declare("201204");
    run.End();
    EXPECT_EQ(ErrorOf([&] { run.embedded().Consolidar({Outcome::Estado::kRecusado}, "x"); }), 5);
  }
  {
    HostRun run(folder_);  // left without an end, as after the answer No
    run.Begin();
    run.Declare("201204");
    run.Begin();  // and another run over the same host
    run.Declare("201205");
    run.End();
    run.embedded().Consolidar(kAccepted, "b.txt");
  }
  Import("201206");
  EXPECT_THAT(References(), ElementsAre("2012-03", "2012-05", "2012-06"));
  EXPECT_THAT(Files(), ElementsAre("tblFixas.fix", "tremvik.db", "tremvik.lock"));

  HostRun again(folder_);  // the reference came into the store behind the question's back
  again.Begin();
  again.Declare("201207");
  again.Declare("201206");
  again.End();
  EXPECT_EQ(ErrorOf([&] { again.embedded().Consolidar(kAccepted, "c.txt"); }), 3022);
  EXPECT_EQ(References().size(), 3U) << "all or none";
}

TEST_F(EmbeddedHostTest, StoresOfOthersAreRefused) {
  Import("201203");
  const auto open = [&] { return ErrorOf([&] { (void)DeclarationStore(folder_).Listar(); }); };
  sqlite::Connection(Path("tremvik.db"), SQLITE_OPEN_READWRITE).Execute("PRAGMA application_id = 1");
  EXPECT_EQ(open(), 3343);
  test::WriteFile(Path("tremvik.db"), "");  // an import that was killed before its first transaction ended
  EXPECT_EQ(open(), 0);
  Import("201203");
  EXPECT_THAT(References(), ElementsAre("2012-03"));
}

TEST(DeclarationKeyTest, UsersWriteKeysInSeveralForms) {
  for (const auto* const ie : {"110042490114", "110.042.490.114"})
    EXPECT_EQ(NormalizarIE(ie), kIE);
  for (const auto* const ie : {"", "11004249011", "110.042.490-114", "11.0042490.114", "11004249011x"}) {
    EXPECT_EQ(NormalizarIE(ie), "") << ie;
  }
  for (const auto* const ref : {"201203", "2012-03", "03/2012"})
    EXPECT_EQ(NormalizarReferencia(ref), "2012-03");
  for (const auto* const ref : {"", "2012", "201213", "201200", "2012/03", "3/2012", "2012-3x"}) {
    EXPECT_EQ(NormalizarReferencia(ref), "") << ref;
  }
}

}  // namespace
}  // namespace tremvik
