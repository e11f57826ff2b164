#include "adapters/sqlite/temporary_database.h"

#include <cstdio>
#include <new>

#include "adapters/sqlite/store_schema.h"

namespace tremvik {
namespace {

constexpr int kBancoFechado = 3420;

// The files are thrown away after a crash, so nothing is spent on surviving one.
constexpr const char* kNoGuarantees =
    "PRAGMA main.journal_mode = OFF; PRAGMA main.synchronous = OFF; PRAGMA main.locking_mode = EXCLUSIVE";

void RemoveFiles(const std::string& database) {
  for (const char* const suffix : {"", "-journal", "-wal", "-shm"})
    std::remove((database + suffix).c_str());
}

}  // namespace

void TemporaryDatabase::Preparar() {
  Remover();
  held_.emplace();
  const std::string file = folder_.File(arquivo::kTemporarioVazio);
  MakePrivateFile(file);
  sqlite::Connection vazio(file, SQLITE_OPEN_READWRITE);
  vazio.Execute(kNoGuarantees);
  vazio.Execute("BEGIN;" + EsquemaTemporario() + "COMMIT");
}

std::int16_t TemporaryDatabase::Abrir(std::string_view caminho) {
  encerrado_ = false;
  FinalizeInsertions();
  const std::string file = folder_.Resolve(caminho);
  connection_ = sqlite::Connection(file, SQLITE_OPEN_READWRITE);
  connection_.Execute(kNoGuarantees);
  connection_.Execute("BEGIN EXCLUSIVE");
  std::remove(file.c_str());
  held_.reset();
  ultima_linha_ = {};
  declaracoes_ = 0;
  return 1;
}

void TemporaryDatabase::Encerrar() {
  if (!connection_ || encerrado_) return;
  FinalizeInsertions();
  try {
    connection_.Execute("COMMIT");
  } catch (const RuntimeError&) {
    connection_.Close();
    throw;
  }
  encerrado_ = true;
}

void TemporaryDatabase::FinalizeInsertions() {
  for (auto& insercao : insercoes_)
    insercao.reset();
}

void TemporaryDatabase::Remover() {
  encerrado_ = false;
  FinalizeInsertions();
  connection_.Close();
  RemoveFiles(folder_.File(arquivo::kTemporarioVazio));
  RemoveFiles(folder_.File(arquivo::kTemporario));
  held_.reset();
}

void TemporaryDatabase::Descartar() noexcept {
  try {
    Remover();
  } catch (const std::bad_alloc&) {
    encerrado_ = false;  // the files stay until the next run removes them
  }
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
  if (!connection_ || encerrado_)
    throw RuntimeError(kBancoFechado, "O banco de dados temporário não está aberto.");
  auto& insercao = insercoes_[registro];
  if (!insercao) insercao = connection_.Prepare(InsercaoTemporaria(TabelaDe(registro)), true);
  return *insercao;
}

}  // namespace tremvik
