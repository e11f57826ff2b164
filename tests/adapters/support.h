#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "adapters/sqlite/connection.h"
#include "host/host.h"
#include "tests/support/files.h"

namespace tremvik::test {

/// All rows of a query, cells joined by "|".
inline std::vector<std::string> Rows(const sqlite::Connection& connection, std::string_view sql) {
  sqlite::Statement row = connection.Prepare(sql);
  std::vector<std::string> rows;
  while (row.Step()) {
    std::string& text = rows.emplace_back(row.Text(0));
    for (int column = 1; column < row.Columns(); ++column)
      text.append("|").append(row.Text(column));
  }
  return rows;
}

inline std::vector<std::string> Rows(const std::string& database, std::string_view sql) {
  return Rows(sqlite::Connection(database, SQLITE_OPEN_READWRITE), sql);
}

/// A host side that nobody watches.
struct Nobody final : Screen, Events, Diagnostics {
  int MsgBox(std::string_view /*text*/, int /*style*/, std::string_view /*title*/) override {
    return resposta::kOk;
  }
  void SetPointer(int /*pointer*/) override {}
  void Progresso() override {}
  void Fechar() override {}
  void Inconsistencia(const FaultLocation& /*where*/) override {}
  void Duvida(const FaultLocation& /*where*/) override {}
};

}  // namespace tremvik::test
