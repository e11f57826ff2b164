#include "adapters/sqlite/temporary_database.h"

#include <cstdio>
#include <new>

#include "adapters/sqlite/store_schema.h"

namespace tremvik {
namespace {

constexpr int kDatabaseClosed = 3420;

// The files are thrown away after a crash, so nothing is spent on surviving one.
constexpr const char* kNoGuarantees =
    "PRAGMA main.journal_mode = OFF; PRAGMA main.synchronous = OFF; PRAGMA main.locking_mode = EXCLUSIVE";

void RemoveFiles(const std::string& database) {
  for (const char* const suffix : {"", "-journal", "-wal", "-shm"})
    std::remove((database + suffix).c_str());
}

}  // namespace

void TemporaryDatabase::Preparar() {
  Remove();
  held_.emplace();
  const std::string file = folder_.File(arquivo::kTemporarioVazio);
  MakePrivateFile(file);
  sqlite::Connection empty(file, SQLITE_OPEN_READWRITE);
  empty.Execute(kNoGuarantees);
  empty.Execute("BEGIN;" + TemporarySchema() + "COMMIT");
}

std::int16_t TemporaryDatabase::Abrir(std::string_view caminho) {
  ended_ = false;
  FinalizeInsertions();
  const std::string file = folder_.Resolve(caminho);
  connection_ = sqlite::Connection(file, SQLITE_OPEN_READWRITE);
  connection_.Execute(kNoGuarantees);
  connection_.Execute("BEGIN EXCLUSIVE");
  std::remove(file.c_str());
  held_.reset();
  last_line_ = {};
  declarations_ = 0;
  return 1;
}

void TemporaryDatabase::Encerrar() {
  held_.reset();
  if (!connection_ || ended_) return;
  FinalizeInsertions();
  try {
    connection_.Execute("COMMIT");
  } catch (const RuntimeError&) {
    connection_.Close();
    throw;
  }
  ended_ = true;
}

void TemporaryDatabase::FinalizeInsertions() {
  for (auto& insertion : insertions_)
    insertion.reset();
}

void TemporaryDatabase::Remove() {
  ended_ = false;
  FinalizeInsertions();
  connection_.Close();
  RemoveFiles(folder_.File(arquivo::kTemporarioVazio));
  RemoveFiles(folder_.File(arquivo::kTemporario));
  held_.reset();
}

void TemporaryDatabase::Discard() noexcept {
  try {
    Remove();
  } catch (const std::bad_alloc&) {
    ended_ = false;  // the files stay until the next run removes them
  }
}

RecordKey TemporaryDatabase::NewKey(Kind kind) {
  const auto parent = TableOf(kind).parent;
  if (kind == Kind::kCr05) {
    ++declarations_;
    last_line_ = {};
  }
  RecordKey key{.declaration = declarations_, .line = line_ ? line_() : 0, .parent = 0};
  if (parent) key.parent = last_line_[*parent];
  if (declarations_ == 0 || (parent && key.parent == 0)) {
    throw RuntimeError(erro::kArgumentoInvalido, "Registro gravado antes do registro a que pertence.");
  }
  last_line_[kind] = key.line;
  return key;
}

sqlite::Statement& TemporaryDatabase::Insertion(Kind kind) {
  if (!connection_ || ended_)
    throw RuntimeError(kDatabaseClosed, "O banco de dados temporário não está aberto.");
  auto& insertion = insertions_[kind];
  if (!insertion) insertion = connection_.Prepare(InsertionSql(TableOf(kind)), true);
  return *insertion;
}

}  // namespace tremvik
