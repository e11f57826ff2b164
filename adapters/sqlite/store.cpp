#include "adapters/sqlite/store.h"

#include <sys/stat.h>

#include <cerrno>

#include "adapters/sqlite/store_schema.h"

namespace tremvik {
namespace {

constexpr int kEsperaMs = 5000;
constexpr std::int64_t kIdentidade = 0x54524D56;  // "TRMV", in the file's header
constexpr std::int64_t kVersao = 1;

// An empty file is a store whose first transaction never ended.
bool Vazio(sqlite::Connection& banco) { return banco.Number("PRAGMA schema_version") == 0; }

void ConferirVersao(sqlite::Connection& banco) {
  if (Vazio(banco)) return;
  if (banco.Number("PRAGMA application_id") != kIdentidade) {
    throw sqlite::EngineError(banco.get(), SQLITE_NOTADB);
  }
  if (banco.Number("PRAGMA user_version") > kVersao) {
    throw RuntimeError(
        erro::kFormatoDesconhecido,
        "O banco de declarações foi gravado por uma versão mais nova do programa; atualize-o.");
  }
}

class Anexo {
 public:
  Anexo(sqlite::Connection& banco, const std::string& arquivo) : banco_(banco) {
    banco_.Prepare("ATTACH ? AS prf").Bind(1, std::string_view{arquivo}).Run();
  }
  ~Anexo() { sqlite3_exec(banco_.get(), "DETACH prf", nullptr, nullptr, nullptr); }
  Anexo(const Anexo&) = delete;
  Anexo& operator=(const Anexo&) = delete;

 private:
  sqlite::Connection& banco_;
};

}  // namespace

bool Store::AbrirExistente() {
  if (connection_) return true;
  struct stat found {};
  if (::stat(file_.c_str(), &found) != 0 && (errno == ENOENT || errno == ENOTDIR)) return false;
  sqlite::Connection aberto(file_, SQLITE_OPEN_READWRITE, kEsperaMs);
  ConferirVersao(aberto);
  connection_ = std::move(aberto);
  return true;
}

sqlite::Connection* Store::Abrir() {
  return AbrirExistente() && !Vazio(connection_) ? &connection_ : nullptr;
}

bool Store::Guarda(std::string_view ie, std::string_view referencia) {
  if (sem_banco_) return false;
  if (!pergunta_) {
    sem_banco_ = Abrir() == nullptr;
    if (sem_banco_) return false;
    pergunta_ = connection_.Prepare("SELECT 1 FROM declaracao WHERE ie = ? AND referencia = ?", true);
  }
  const bool guarda = pergunta_->Bind(1, ie).Bind(2, referencia).Step();
  pergunta_->Reset();
  return guarda;
}

void Store::CriarEsquema() {
  connection_.Execute(EsquemaDoBanco());
  connection_.Execute("PRAGMA application_id = " + std::to_string(kIdentidade) +
                      "; PRAGMA user_version = " + std::to_string(kVersao));
}

void Store::Transferir(std::string_view nome_do_arquivo) {
  std::string registros("0");
  for (const auto& tabela : TabelasDeRegistros()) {
    registros.append(" + (SELECT count(*) FROM prf.").append(tabela.nome).append(")");
  }
  connection_
      .Prepare(
          "INSERT INTO main.importacao (arquivo, importado_em, declaracoes, registros) SELECT ?,"
          " strftime('%Y-%m-%dT%H:%M:%SZ', 'now'), (SELECT count(*) FROM prf.declaracao), " +
          registros)
      .Bind(1, nome_do_arquivo)
      .Run();
  const std::int64_t importacao = sqlite3_last_insert_rowid(connection_.get());
  const std::int64_t base = connection_.Number("SELECT coalesce(max(id), 0) FROM main.declaracao");
  for (const auto& tabela : TabelasDeRegistros()) {
    sqlite::Statement mover = connection_.Prepare(Transferencia(tabela));
    mover.Bind(1, base);
    if (tabela.registro == Kind::kCr05) mover.Bind(2, importacao);
    mover.Run();
  }
}

void Store::Receber(const std::string& temporario, std::string_view nome_do_arquivo) {
  if (!AbrirExistente()) {
    connection_ = sqlite::Connection(file_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, kEsperaMs);
  }
  connection_.Execute("PRAGMA foreign_keys = ON");
  const Anexo anexo(connection_, temporario);
  sqlite::Transaction transacao(connection_);
  if (Vazio(connection_)) CriarEsquema();
  Transferir(nome_do_arquivo);
  transacao.Commit();
  sem_banco_ = false;
}

}  // namespace tremvik
