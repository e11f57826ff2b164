#include "adapters/sqlite/temporary_database.h"

#include <cstdio>
#include <new>

#include "adapters/sqlite/store_schema.h"

namespace tremvik {
namespace {

constexpr int kBancoFechado = 3420;

// The files are thrown away after a crash, so nothing is spent on surviving one.
constexpr const char* kSemGarantias =
    "PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF; PRAGMA locking_mode = EXCLUSIVE";

void RemoverArquivos(const std::string& banco) {
  for (const char* const fim : {"", "-journal", "-wal", "-shm"})
    std::remove((banco + fim).c_str());
}

}  // namespace

void TemporaryDatabase::Preparar() {
  Remover();
  sqlite::Connection vazio(folder_.File(arquivo::kTemporarioVazio),
                           SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
  vazio.Execute(kSemGarantias);
  vazio.Execute("BEGIN;" + EsquemaTemporario() + "COMMIT");
}

std::int16_t TemporaryDatabase::Abrir(std::string_view caminho) {
  Fechar();
  encerrado_ = false;
  connection_ = sqlite::Connection(folder_.Resolve(caminho), SQLITE_OPEN_READWRITE);
  connection_.Execute(kSemGarantias);
  connection_.Execute("BEGIN EXCLUSIVE");
  ultima_linha_ = {};
  declaracoes_ = 0;
  return 1;
}

void TemporaryDatabase::Encerrar() {
  if (!connection_) return;
  for (auto& insercao : insercoes_)
    insercao.reset();
  try {
    connection_.Execute("COMMIT");
  } catch (const RuntimeError&) {
    Fechar();
    throw;
  }
  Fechar();
  encerrado_ = true;
}

void TemporaryDatabase::Fechar() {
  for (auto& insercao : insercoes_)
    insercao.reset();
  connection_.Close();
}

void TemporaryDatabase::Remover() {
  Fechar();
  encerrado_ = false;
  RemoverArquivos(folder_.File(arquivo::kTemporarioVazio));
  RemoverArquivos(folder_.File(arquivo::kTemporario));
}

void TemporaryDatabase::Descartar() noexcept {
  try {
    Remover();
  } catch (const std::bad_alloc&) {
    encerrado_ = false;  // the files stay until the next run removes them
  }
}

std::string TemporaryDatabase::Encerrado() const {
  return encerrado_ ? folder_.File(arquivo::kTemporario) : std::string();
}

ChaveDeRegistro TemporaryDatabase::NovaChave(Kind registro) {
  const auto pai = TabelaDe(registro).pai;
  if (registro == Kind::kCr05) {
    ++declaracoes_;
    ultima_linha_ = {};
  }
  ChaveDeRegistro chave{.declaracao = declaracoes_, .linha = linha_ ? linha_() : 0, .pai = 0};
  if (pai) chave.pai = ultima_linha_[*pai];
  if (declaracoes_ == 0 || (pai && chave.pai == 0)) {
    throw RuntimeError(erro::kArgumentoInvalido, "Registro gravado antes do registro a que pertence.");
  }
  ultima_linha_[registro] = chave.linha;
  return chave;
}

sqlite::Statement& TemporaryDatabase::Insercao(Kind registro) {
  if (!connection_) throw RuntimeError(kBancoFechado, "O banco de dados temporário não está aberto.");
  auto& insercao = insercoes_[registro];
  if (!insercao) insercao = connection_.Prepare(InsercaoTemporaria(TabelaDe(registro)), true);
  return *insercao;
}

}  // namespace tremvik
