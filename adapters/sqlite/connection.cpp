#include "adapters/sqlite/connection.h"

#include <fmt/format.h>

#include <cerrno>

#include "adapters/local/file_errors.h"

namespace tremvik::sqlite {
namespace {

// Where a store is attached, it is the one that the user knows.
std::string FileOf(sqlite3* connection) {
  for (const char* const schema : {"banco", "main"}) {
    const char* const path = connection == nullptr ? nullptr : sqlite3_db_filename(connection, schema);
    if (path != nullptr && *path != '\0') return path;
  }
  return {};
}

RuntimeError Named(int number, std::string_view what, sqlite3* connection) {
  const std::string file = FileOf(connection);
  return {number, file.empty() ? fmt::format("{}.", what) : fmt::format("{} '{}'.", what, file)};
}

// The engine tells an unknown name, an unknown table and a malformed text apart; here all three are one code
// with different words.
RuntimeError QueryError(sqlite3* connection) {
  const std::string_view words = sqlite3_errmsg(connection);
  const auto colon = words.rfind(": ");
  const auto name = colon == std::string_view::npos ? words : words.substr(colon + 2);
  if (words.starts_with("no such table"))
    return Named(erro::kTabelaNaoEncontrada, fmt::format("Tabela não encontrada: '{}' em", name), connection);
  if (words.starts_with("no such column")) {
    return Named(erro::kParametrosInsuficientes,
                 fmt::format("Parâmetros insuficientes: não existe a coluna '{}' em", name), connection);
  }
  return {erro::kSintaxeDaConsulta, fmt::format("Erro de sintaxe na consulta: {}", words)};
}

RuntimeError CannotOpen(sqlite3* connection) {
  const int system = connection == nullptr ? 0 : sqlite3_system_errno(connection);
  if (system == EACCES || system == EPERM) {
    return Named(erro::kPermissaoNegada, "Permissão negada ao abrir o banco de dados", connection);
  }
  if (system != 0 && system != ENOENT) {
    return FileError(system, "Não foi possível abrir o banco de dados", FileOf(connection));
  }
  return Named(erro::kBancoNaoEncontrado, "Não foi possível localizar o arquivo", connection);
}

}  // namespace

RuntimeError EngineError(sqlite3* connection, int code) {
  switch (code & 0xFF) {
    case SQLITE_NOMEM:
      return RuntimeError(erro::kMemoriaInsuficiente);
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return Named(erro::kBancoEmUso, "Banco de dados em uso", connection);
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT:
      return Named(erro::kFormatoDesconhecido, "Formato de banco de dados não reconhecido", connection);
    case SQLITE_FULL:
      return Named(erro::kDiscoCheio, "Disco cheio ao gravar", connection);
    case SQLITE_READONLY:
    case SQLITE_PERM:
      return Named(erro::kPermissaoNegada, "Permissão negada ao gravar", connection);
    case SQLITE_CANTOPEN:
      return CannotOpen(connection);
    case SQLITE_CONSTRAINT:
      return Named(kDuplicateValues, "O banco de dados já contém um destes registros", connection);
    case SQLITE_ERROR:
      return QueryError(connection);
    default:
      // SQLite does not keep why a write failed.
      if (sqlite3_extended_errcode(connection) == SQLITE_IOERR_WRITE && SizesAreLimited())
        return FileError(EFBIG, "Não foi possível gravar", FileOf(connection));
      return Named(erro::kEntradaSaida, "Erro de E/S no banco de dados", connection);
  }
}

void Statement::Check(int code) const {
  if (code != SQLITE_OK) throw EngineError(sqlite3_db_handle(statement_.get()), code);
}

Statement& Statement::Bind(int parameter, std::int64_t value) {
  Check(sqlite3_bind_int64(statement_.get(), parameter, value));
  return *this;
}

Statement& Statement::Bind(int parameter, std::string_view text) {
  const char* const bytes = text.data() == nullptr ? "" : text.data();  // a null pointer would be Null
  Check(sqlite3_bind_text(statement_.get(), parameter, bytes, static_cast<int>(text.size()), SQLITE_STATIC));
  return *this;
}

Statement& Statement::BindNull(int parameter) {
  Check(sqlite3_bind_null(statement_.get(), parameter));
  return *this;
}

bool Statement::Step() {
  const int code = sqlite3_step(statement_.get());
  if (code == SQLITE_ROW) return true;
  if (code == SQLITE_DONE) return false;
  Reset();  // gives the same code again, and keeps the connection's words about it
  throw EngineError(sqlite3_db_handle(statement_.get()), code);
}

void Statement::Run() {
  while (Step()) {
  }
  Reset();
}

std::string_view Statement::Text(int column) const {
  const unsigned char* const text = sqlite3_column_text(statement_.get(), column);
  if (text == nullptr) return {};
  const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column));
  return {reinterpret_cast<const char*>(text), size};
}

Connection::Connection(const std::string& path, int flags, int wait_ms) {
  sqlite3* opened = nullptr;
  const int code = sqlite3_open_v2(path.c_str(), &opened, flags | SQLITE_OPEN_NOMUTEX, nullptr);
  connection_.reset(opened);
  if (code != SQLITE_OK) throw EngineError(opened, code);
  sqlite3_busy_timeout(opened, wait_ms);
}

void Connection::Execute(const std::string& sql) const {
  const int code = sqlite3_exec(get(), sql.c_str(), nullptr, nullptr, nullptr);
  if (code != SQLITE_OK) throw EngineError(get(), code);
}

Statement Connection::Prepare(std::string_view sql, bool lasting) const {
  sqlite3_stmt* made = nullptr;
  const char* rest = nullptr;
  const unsigned int flags = lasting ? SQLITE_PREPARE_PERSISTENT : 0;
  const int code = sqlite3_prepare_v3(get(), sql.data(), static_cast<int>(sql.size()), flags, &made, &rest);
  Statement statement(made);
  if (code != SQLITE_OK) throw EngineError(get(), code);
  const auto tail = sql.substr(static_cast<std::size_t>(rest - sql.data()));
  if (made == nullptr || tail.find_first_not_of(" \r\n\t;") != std::string_view::npos) {
    throw RuntimeError(erro::kSintaxeDaConsulta);
  }
  return statement;
}

std::int64_t Connection::Number(std::string_view sql) const {
  Statement statement = Prepare(sql);
  return statement.Step() ? statement.Integer(0) : 0;
}

}  // namespace tremvik::sqlite
