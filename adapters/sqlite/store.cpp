#include "adapters/sqlite/store.h"

#include <filesystem>
#include <vector>

#include "adapters/local/system.h"
#include "adapters/sqlite/store_schema.h"

namespace tremvik {
namespace {

std::string Pragma(std::string_view schema, std::string_view what) {
  return std::string("PRAGMA ").append(schema).append(".").append(what);
}

constexpr int kWaitMs = 5000;
constexpr std::int64_t kIdentity = 0x54524D56;  // "TRMV", in the file's header
constexpr std::int64_t kVersion = 1;

// An empty file is a store whose first transaction never ended.
bool IsEmpty(const sqlite::Connection& database, std::string_view schema = "main") {
  return database.Number(Pragma(schema, "schema_version")) == 0;
}

void CheckVersion(const sqlite::Connection& store) {
  if (IsEmpty(store)) return;
  if (store.Number("PRAGMA application_id") != kIdentity)
    throw sqlite::EngineError(store.get(), SQLITE_NOTADB);
  if (store.Number("PRAGMA user_version") > kVersion) {
    throw RuntimeError(sqlite::kNewerVersion,
                       "O banco de declarações é de uma versão mais nova do programa.");
  }
}

// A store attached to the database of a run, as the schema that `store_schema.h` calls "banco".
class Attachment {
 public:
  Attachment(const sqlite::Connection& run, const std::string& store) : run_(run) {
    run_.Prepare("ATTACH ? AS banco").Bind(1, std::string_view{store}).Run();
  }
  ~Attachment() { sqlite3_exec(run_.get(), "DETACH banco", nullptr, nullptr, nullptr); }
  Attachment(const Attachment&) = delete;
  Attachment& operator=(const Attachment&) = delete;

 private:
  const sqlite::Connection& run_;
};

void MakeSchema(const sqlite::Connection& run) {
  run.Execute(StoreSchema());
  run.Execute(Pragma("banco", "application_id = ") + std::to_string(kIdentity));
  run.Execute(Pragma("banco", "user_version = ") + std::to_string(kVersion));
}

void Transfer(const sqlite::Connection& run, std::string_view file_name) {
  std::string records("0");
  for (const auto& table : RecordTables())
    records.append(" + (SELECT count(*) FROM main.").append(table.name).append(")");
  run.Prepare(
         "INSERT INTO banco.importacao (arquivo, importado_em, declaracoes, registros) SELECT ?,"
         " strftime('%Y-%m-%dT%H:%M:%SZ', 'now'), (SELECT count(*) FROM main.declaracao), " +
         records)
      .Bind(1, file_name)
      .Run();
  const std::int64_t import = sqlite3_last_insert_rowid(run.get());
  const std::int64_t base = run.Number("SELECT coalesce(max(id), 0) FROM banco.declaracao");
  for (const auto& table : RecordTables()) {
    sqlite::Statement move = run.Prepare(TransferSql(table));
    move.Bind(1, base);
    if (table.kind == Kind::kCr05) move.Bind(2, import);
    move.Run();
  }
}

// "-mj" and nine hexadecimal digits follow the store's name.
bool IsSuperJournal(std::string_view name, std::string_view store) {
  if (!name.starts_with(store)) return false;
  name.remove_prefix(store.size());
  return name.size() == 12 && name.starts_with("-mj") &&
         name.find_first_not_of("0123456789ABCDEF", 3) == std::string_view::npos;
}

}  // namespace

bool Store::OpenExisting() {
  if (connection_) return true;
  if (IsMissing(file_)) return false;
  DemandOwnFile(file_);
  sqlite::Connection opened(file_, SQLITE_OPEN_READWRITE, kWaitMs);
  CheckVersion(opened);
  connection_ = std::move(opened);
  return true;
}

sqlite::Connection* Store::Abrir() {
  return OpenExisting() && !IsEmpty(connection_) ? &connection_ : nullptr;
}

bool Store::Holds(std::string_view ie, std::string_view referencia) {
  if (missing_) return false;
  if (!question_) {
    missing_ = Abrir() == nullptr;
    if (missing_) return false;
    question_ = connection_.Prepare("SELECT 1 FROM declaracao WHERE ie = ? AND referencia = ?", true);
  }
  const bool holds = question_->Bind(1, ie).Bind(2, referencia).Step();
  question_->Reset();
  return holds;
}

void Store::Receive(sqlite::Connection& run, std::string_view file_name) {
  if (!OpenExisting()) MakePrivateFile(file_);
  run.Execute("PRAGMA foreign_keys = ON");
  sqlite3_busy_timeout(run.get(), kWaitMs);
  const Attachment attachment(run, file_);
  sqlite::Transaction transaction(run);
  if (IsEmpty(run, "banco")) MakeSchema(run);
  Transfer(run, file_name);
  transaction.Commit();
  missing_ = false;
}

void Store::RemoveAbandonedJournals() {
  const std::filesystem::path store(file_);
  std::vector<std::filesystem::path> found;
  std::error_code ignored;
  for (const auto& entry : std::filesystem::directory_iterator(store.parent_path(), ignored)) {
    if (IsSuperJournal(entry.path().filename().string(), store.filename().string()))
      found.push_back(entry.path());
  }
  if (found.empty()) return;
  // The store's own journal names the other one and is void without it: the store is put right before.
  (void)Abrir();
  if (std::filesystem::exists(file_ + "-journal", ignored)) return;
  for (const auto& journal : found)
    std::filesystem::remove(journal, ignored);
}

}  // namespace tremvik
