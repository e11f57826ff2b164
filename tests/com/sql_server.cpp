// Runs queries on SQLite databases through the system's data connections: reads lines "PATH<tab>SQL" and
// answers each with one line, "vazio", "linha<tab>COLUMN<tab>TEXT..." or "erro<tab>TEXT". All UTF-8, which
// the driver takes and gives as plain characters, whatever the locale.
#include <fcntl.h>
#include <io.h>

#include <array>
#include <cstdio>
#include <iostream>
#include <map>
#include <string>

#include "adapters/com/windows_api.h"
// These need the system's declarations before them; plain characters, not wide ones.
#define SQL_NOUNICODEMAP
#include <sql.h>
#include <sqlext.h>

namespace {

SQLCHAR* Chars(std::string& text) { return reinterpret_cast<SQLCHAR*>(text.data()); }

template <std::size_t kSize>
std::string Text(const std::array<SQLCHAR, kSize>& buffer) {
  return reinterpret_cast<const char*>(buffer.data());
}

// The driver belongs to the system below, which knows the file without a drive letter.
std::string DriverPath(std::string path) {
  for (char& c : path)
    if (c == '\\') c = '/';
  return path.starts_with("Z:") ? path.substr(2) : path;
}

SQLHDBC Connect(SQLHENV environment, const std::string& path) {
  SQLHDBC connection = nullptr;
  SQLAllocHandle(SQL_HANDLE_DBC, environment, &connection);
  std::string text = "Driver=SQLite3;NoCreat=1;Database=" + DriverPath(path);
  SQLDriverConnect(connection, nullptr, Chars(text), SQL_NTS, nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT);
  return connection;
}

std::string LastError(SQLHSTMT statement) {
  std::array<SQLCHAR, 6> state{};
  std::array<SQLCHAR, 512> text{};
  SQLINTEGER native = 0;
  SQLSMALLINT length = 0;
  SQLGetDiagRec(SQL_HANDLE_STMT, statement, 1, state.data(), &native, text.data(), text.size(), &length);
  return "erro\t" + Text(text);
}

std::string FirstRow(SQLHSTMT statement) {
  if (!SQL_SUCCEEDED(SQLFetch(statement))) return "vazio";
  std::string line = "linha";
  SQLSMALLINT columns = 0;
  SQLNumResultCols(statement, &columns);
  for (SQLSMALLINT column = 1; column <= columns; ++column) {
    std::array<SQLCHAR, 256> name{};
    std::array<SQLCHAR, 4096> text{};
    SQLSMALLINT length = 0;
    SQLLEN size = 0;
    const auto number = static_cast<SQLUSMALLINT>(column);
    SQLDescribeCol(statement, number, name.data(), name.size(), &length, nullptr, nullptr, nullptr, nullptr);
    SQLGetData(statement, number, SQL_C_CHAR, text.data(), text.size(), &size);
    line += "\t" + Text(name) + "\t" + (size > 0 ? Text(text) : std::string());
  }
  return line;
}

std::string Answer(SQLHDBC connection, std::string sql) {
  SQLHSTMT statement = nullptr;
  if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_STMT, connection, &statement))) return "erro\tno connection";
  const bool good = SQL_SUCCEEDED(SQLExecDirect(statement, Chars(sql), SQL_NTS));
  std::string answer = good ? FirstRow(statement) : LastError(statement);
  SQLFreeHandle(SQL_HANDLE_STMT, statement);
  return answer;
}

}  // namespace

int main() {
  _setmode(_fileno(stdin), _O_BINARY);
  _setmode(_fileno(stdout), _O_BINARY);
  SQLHENV environment = nullptr;
  SQLAllocHandle(SQL_HANDLE_ENV, nullptr, &environment);
  auto* const version = reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3);
  SQLSetEnvAttr(environment, SQL_ATTR_ODBC_VERSION, version, 0);
  std::map<std::string, SQLHDBC> connections;
  for (std::string line; std::getline(std::cin, line);) {
    const auto tab = line.find('\t');
    const std::string path = line.substr(0, tab);
    if (!connections.contains(path)) connections[path] = Connect(environment, path);
    std::cout << Answer(connections[path], line.substr(tab + 1)) << "\n" << std::flush;
  }
}
