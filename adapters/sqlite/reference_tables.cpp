#include "adapters/sqlite/reference_tables.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <functional>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <span>

#include "adapters/local/descriptor.h"
#include "adapters/local/replacement.h"
#include "adapters/local/system.h"
#include "adapters/sqlite/reference_digest.h"
#include "adapters/sqlite/reference_image.h"
#include "adapters/sqlite/reference_schema.h"
#include "adapters/sqlite/table_loader.h"
#include "adapters/tables/embedded_tables.h"
#include "host/runtime_error.h"

namespace tremvik {
namespace {

// Gives a file's text by its name, or nothing when it cannot be read.
using Reader = std::function<std::optional<std::string>(std::string_view file)>;
using RowCounts = std::map<std::string, std::size_t, std::less<>>;

constexpr std::size_t kMostBytes = std::size_t{64} * 1024 * 1024;  // of a CSV file

void MakeTable(const sqlite::Connection& database, const ReferenceTable& table) {
  std::string columns;
  for (const ReferenceColumn& column : table.columns) {
    columns += fmt::format("{}{} {} NOT NULL", columns.empty() ? "" : ", ", Quoted(column.name),
                           column.integer ? "INTEGER" : "TEXT");
  }
  database.Execute(fmt::format("CREATE TABLE {} ({})", Quoted(table.name), columns));
}

void MakeIndices(const sqlite::Connection& database, const ReferenceTable& table) {
  for (const ReferenceColumn& column : table.columns) {
    if (!column.indexed) continue;
    const std::string name = fmt::format("{}.{}", table.name, column.name);
    database.Execute(
        fmt::format("CREATE INDEX {} ON {} ({})", Quoted(name), Quoted(table.name), Quoted(column.name)));
  }
}

// Raises nlohmann's errors.
RowCounts ParseCounts(const std::string& json) {
  RowCounts counts;
  const auto description = nlohmann::json::parse(json);
  for (const auto& table : description.at("tables")) {
    if (!table.contains("rows")) continue;
    counts[table.at("file").get<std::string>()] = table.at("rows").get<std::size_t>();
  }
  return counts;
}

// The row counts that "tables.json" states; none without that file.
RowCounts ReadCounts(const Reader& read, std::vector<std::string>& problems) {
  const auto json = read("tables.json");
  try {
    return json ? ParseCounts(*json) : RowCounts();
  } catch (const nlohmann::json::exception& error) {
    problems.push_back(fmt::format("tables.json: não foi possível entender o arquivo: {}.", error.what()));
    return {};
  }
}

void LoadTable(const sqlite::Connection& database, const ReferenceTable& table, const Reader& read,
               const RowCounts& counts, Problems& problems) {
  MakeTable(database, table);
  const auto csv = read(table.file);
  if (!csv) {
    problems.Note("o arquivo não existe, não pode ser lido ou não é um arquivo comum de até 64 MiB");
    return;
  }
  TableLoader loader(database, table, problems);
  loader.Load(*csv);
  const auto count = counts.find(table.file);
  if (problems.empty() && count != counts.end() && count->second != loader.rows()) {
    problems.Note(
        fmt::format("o arquivo tem {} linhas, tables.json diz {}; complete as linhas ou corrija tables.json",
                    loader.rows(), count->second));
  }
  MakeIndices(database, table);
}

// Loads all tables into the empty `database`; the result is what is wrong with them.
std::vector<std::string> LoadTables(sqlite::Connection& database, const Reader& read) {
  std::vector<std::string> all;
  const RowCounts counts = ReadCounts(read, all);
  sqlite::Transaction transaction(database);
  for (const ReferenceTable& table : ReferenceTables()) {
    Problems problems(table.file);
    LoadTable(database, table, read, counts, problems);
    problems.MoveInto(all);
  }
  transaction.Commit();
  return all;
}

sqlite::Connection InMemory() { return {":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE}; }

std::string BytesOf(const sqlite::Connection& database) {
  const auto free = [](unsigned char* bytes) { sqlite3_free(bytes); };
  sqlite3_int64 size = 0;
  const std::unique_ptr<unsigned char, decltype(free)> bytes(
      sqlite3_serialize(database.get(), "main", &size, 0), free);
  if (!bytes) throw RuntimeError(erro::kMemoriaInsuficiente);
  return {reinterpret_cast<const char*>(bytes.get()), static_cast<std::size_t>(size)};
}

bool HasTables(const sqlite::Connection& database) {
  return database.Number("PRAGMA application_id") == 0 &&
         database.Number(fmt::format("SELECT count(*) FROM sqlite_master WHERE name = '{}'",
                                     ReferenceTables().front().name)) > 0;
}

// What stands at `path` may be replaced: nothing, an empty file, reference tables whole or damaged.
void DemandReplaceable(const std::string& path) {
  if (IsMissing(path)) return;
  struct stat found {};
  if (::stat(path.c_str(), &found) == 0 && S_ISREG(found.st_mode)) {
    if (found.st_size == 0 || CheckDigest(path) != DigestState::kMissing) return;
    try {
      if (HasTables({path, SQLITE_OPEN_READONLY})) return;
    } catch (const RuntimeError&) {
      // no database
    }
  }
  throw RuntimeError(
      erro::kArquivoJaExiste,
      fmt::format("'{}' já existe e não é um banco de tabelas de referência; apague-o ou escolha outro nome.",
                  path));
}

std::vector<std::string> Build(const Reader& read, std::string_view path) {
  const std::string file(path);
  DemandReplaceable(file);
  sqlite::Connection database = InMemory();
  auto problems = LoadTables(database, read);
  if (!problems.empty()) return problems;
  std::string bytes = BytesOf(database);
  PutDigest(bytes);
  ReplaceFile(file, bytes);
  return problems;
}

std::optional<std::string> BuiltIn(std::string_view file) {
  const auto all = EmbeddedFiles();
  const auto found = std::ranges::find(all, file, &EmbeddedFile::name);
  return found == all.end() ? std::nullopt : std::optional<std::string>(found->text);
}

// An empty file is a database without tables to SQLite, but none of ours.
sqlite::Connection OpenDatabase(const std::string& file) {
  struct stat found {};
  if (::stat(file.c_str(), &found) != 0 && errno == ENOENT) {
    throw RuntimeError(erro::kBancoNaoEncontrado,
                       fmt::format("Não foi possível localizar o arquivo '{}'.", file));
  }
  if (found.st_mode != 0 && !S_ISREG(found.st_mode))
    throw RuntimeError(erro::kAcessoAoCaminho, fmt::format("'{}' não é um arquivo comum.", file));
  sqlite::Connection database(file, SQLITE_OPEN_READONLY);
  database.Execute("BEGIN");  // one lock for all queries, and answers from one state of the database
  if (database.Number("PRAGMA schema_version") == 0) throw sqlite::EngineError(database.get(), SQLITE_NOTADB);
  return database;
}

std::vector<std::string> ColumnsOf(const sqlite::Connection& database, const ReferenceTable& table) {
  sqlite::Statement columns = database.Prepare("SELECT name FROM pragma_table_info(?)");
  columns.Bind(1, table.name);
  std::vector<std::string> names;
  while (columns.Step())
    names.emplace_back(columns.Text(0));
  return names;
}

void CheckTable(const sqlite::Connection& database, const ReferenceTable& table, Problems& problems) {
  if (IsView(database, table.name)) return problems.Note("é uma visão, e não uma tabela");
  const auto names = ColumnsOf(database, table);
  if (names.empty()) return problems.Note("a tabela não existe");
  for (const ReferenceColumn& column : table.columns) {
    if (std::ranges::find(names, column.name) == names.end())
      problems.Note(fmt::format("falta a coluna '{}'", column.name));
  }
  if (!problems.empty()) return;
  if (database.Number(fmt::format("SELECT count(*) FROM {}", Quoted(table.name))) == 0)
    problems.Note("a tabela não tem nenhuma linha");
  for (const InvalidRow& row : InvalidRows(database, table, false))
    problems.Note(fmt::format("{}: {}", row.key, row.words));
}

}  // namespace

DigestState CheckDigest(const std::string& path) {
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  std::array<char, std::size_t{16} * 1024> piece;
  DigestCheck check;
  while (true) {
    const ssize_t got = file ? ::read(file.get(), piece.data(), piece.size()) : -1;
    if (got < 0) return DigestState::kMissing;
    if (got == 0) return check.state();
    check.Add({piece.data(), static_cast<std::size_t>(got)});
  }
}

std::vector<std::string> ConstruirTabelas(std::string_view dados_dir, std::string_view arquivo) {
  const std::filesystem::path folder(dados_dir);
  std::error_code ignored;
  if (!std::filesystem::is_directory(folder, ignored))
    return {fmt::format("A pasta '{}' não existe ou não pode ser lida.", dados_dir)};
  return Build([&folder](std::string_view file) { return ReadRegularFile(folder / file, kMostBytes); },
               arquivo);
}

void ConstruirTabelasPadrao(std::string_view arquivo) {
  const auto problems = Build(BuiltIn, arquivo);
  if (!problems.empty()) throw RuntimeError(erro::kArgumentoInvalido, problems.front());
}

sqlite::Connection TabelasPadrao() {
  sqlite::Connection database = InMemory();
  const auto problems = LoadTables(database, BuiltIn);
  if (!problems.empty()) throw RuntimeError(erro::kArgumentoInvalido, problems.front());
  return database;
}

sqlite::Connection AbrirTabelas(const std::string& arquivo) {
  sqlite::Connection database = OpenDatabase(arquivo);
  DemandReferenceTables(database, CheckDigest(arquivo), arquivo);
  return database;
}

std::vector<std::string> VerificarTabelas(std::string_view arquivo) {
  const sqlite::Connection database = OpenDatabase(std::string(arquivo));
  std::vector<std::string> all;
  for (const ReferenceTable& table : ReferenceTables()) {
    Problems problems(table.name);
    CheckTable(database, table, problems);
    problems.MoveInto(all);
  }
  if (CheckDigest(std::string(arquivo)) == DigestState::kDiffers)
    all.push_back(fmt::format("{}: {}.", arquivo, kChanged));
  return all;
}

}  // namespace tremvik
