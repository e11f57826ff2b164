#include "adapters/sqlite/reference_image.h"

#include <fmt/format.h>

#include <algorithm>

#include "adapters/sqlite/reference_schema.h"
#include "host/runtime_error.h"

namespace tremvik {
namespace {

// SQLite frees the copy, also when it does not take it.
void Load(const sqlite::Connection& database, std::string_view bytes) {
  auto* const copy = static_cast<unsigned char*>(sqlite3_malloc64(bytes.size()));
  if (copy == nullptr) throw RuntimeError(erro::kMemoriaInsuficiente);
  std::ranges::copy(bytes, copy);
  const auto size = static_cast<sqlite3_int64>(bytes.size());
  const int code = sqlite3_deserialize(database.get(), "main", copy, size, size,
                                       SQLITE_DESERIALIZE_FREEONCLOSE | SQLITE_DESERIALIZE_READONLY);
  if (code != SQLITE_OK) throw sqlite::EngineError(database.get(), code);
}

bool IsDatabase(const sqlite::Connection& database, std::string_view bytes) {
  if (!bytes.starts_with(kSqliteMark)) return false;
  try {
    Load(database, bytes);
    return database.Number("PRAGMA schema_version") != 0;
  } catch (const RuntimeError& error) {
    if (error.number() == erro::kMemoriaInsuficiente) throw;
    return false;
  }
}

}  // namespace

void DemandReferenceTables(const sqlite::Connection& database, DigestState digest, std::string_view arquivo) {
  if (digest == DigestState::kDiffers)
    throw RuntimeError(erro::kFormatoDesconhecido, fmt::format("'{}': {}.", arquivo, kChanged));
  if (digest == DigestState::kMissing) DemandTables(database);
}

sqlite::Connection AbrirImagem(std::string_view bytes, std::string_view arquivo) {
  DigestCheck check;
  check.Add(bytes);
  sqlite::Connection database(":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
  if (!IsDatabase(database, bytes)) {
    throw RuntimeError(erro::kFormatoDesconhecido,
                       fmt::format("Formato de banco de dados não reconhecido '{}'.", arquivo));
  }
  DemandReferenceTables(database, check.state(), arquivo);
  return database;
}

}  // namespace tremvik
