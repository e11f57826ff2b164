#include "tests/faults/scene.h"

#include "adapters/sqlite/connection.h"
#include "adapters/sqlite/declaration_store.h"
#include "adapters/sqlite/embedded_host.h"
#include "component/tremvik.h"
#include "sample/sample.h"

namespace tremvik::test {

std::string Sample(int declaracoes, std::uint64_t semente, bool duvida) {
  return sample::Generate({.declaracoes = declaracoes, .seed = semente, .duvida = duvida});
}

int DeclarationsIn(const std::string& pasta) {
  const std::string file = pasta + "/" + std::string(arquivo::kDeclaracoes);
  if (!std::filesystem::exists(file)) return 0;
  sqlite::Connection store(file, SQLITE_OPEN_READWRITE);  // what a crash left is rolled back
  sqlite::Statement check = store.Prepare("PRAGMA integrity_check");
  if (!check.Step() || check.Text(0) != "ok") return -1;
  if (store.Prepare("PRAGMA foreign_key_check").Step()) return -1;
  if (store.Number("PRAGMA schema_version") == 0) return 0;
  // An import is whole: as many declarations and records as it says of itself.
  const auto declarations = store.Number("SELECT count(*) FROM declaracao");
  std::string records("SELECT 0");
  for (const char* const table :
       {"declaracao", "pagamento", "cfop", "interestadual", "zona_franca", "ocorrencia", "ocorrencia_ie",
        "ocorrencia_substituto", "ocorrencia_substituido", "ocorrencia_autorizacao", "dipam", "exportacao"}) {
    records.append(" + (SELECT count(*) FROM ").append(table).append(")");
  }
  if (store.Number("SELECT coalesce(sum(declaracoes), 0) FROM importacao") != declarations) return -1;
  if (store.Number("SELECT coalesce(sum(registros), 0) FROM importacao") != store.Number(records)) return -1;
  return static_cast<int>(declarations);
}

int Desk::MsgBox(std::string_view text, int style, std::string_view title) {
  if ((style & estilo::kSimNao) != 0) {
    ++questions;
    return resposta::kSim;
  }
  if (title == "Arquivo Pré-Formatado") {
    ++successes;
  } else {
    last = text;
    ++faults;
  }
  return resposta::kOk;
}

Scene::Scene() {
  WriteFile(sample_, Sample(1, 2));
  (void)Import({});
  store_ = ReadFile(pasta_ + "/" + std::string(arquivo::kDeclaracoes));
  WriteFile(sample_, Sample(1, 1, true));
}

void Scene::Restore() const {
  const std::string store = pasta_ + "/" + std::string(arquivo::kDeclaracoes);
  std::filesystem::remove(store + "-journal");
  WriteFile(store, store_);
}

Scene::Ended Scene::Import(const Around& around) const {
  Ended ended{.failed = true, .kept = false, .why = {}, .desk = {}};
  try {
    EmbeddedHost embedded({.pasta = pasta_, .config_home = folder_.path()}, ended.desk, ended.desk,
                          ended.desk);
    Tremvik tremvik(around.wrap(embedded.host()));
    embedded.AcompanharLinha([&tremvik] { return int{tremvik.NroLinha()}; });
    around.before();
    tremvik.Monitora(sample_);
    around.after();
    ended.failed = tremvik.bolRetMonitora();
    if (ended.failed) return ended;
    embedded.Consolidar(tremvik.outcome(), "amostra.txt");
    ended.kept = true;
  } catch (const RuntimeError& error) {
    ended.why = error.description();
  }
  return ended;
}

}  // namespace tremvik::test
