// The reference tables: their files, columns and what a row must look like to be found by a look-up.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "adapters/sqlite/connection.h"

namespace tremvik {

/// A column; whole numbers apart, all are texts ("1.10" and "1.1" are different codes).
struct ColunaFixa {
  std::string_view nome;
  bool inteiro = false;
  bool indice = false;
};

/// A reference table. Its first column names a row to the user.
struct TabelaFixa {
  std::string_view nome;
  std::string_view arquivo;  ///< the CSV file of its rows
  std::span<const ColunaFixa> colunas;
};

/// The eight reference tables.
[[nodiscard]] std::span<const TabelaFixa> TabelasFixas();

/// A row that no look-up could use.
struct LinhaInvalida {
  std::int64_t rowid;  ///< 0 unless asked for
  std::string chave;   ///< the first column, "CFOP '5.102'"
  std::string motivo;  ///< what is wrong with it, Portuguese
};

/// The invalid rows of a table that has all its columns. `com_rowid` wants the table's rowid.
[[nodiscard]] std::vector<LinhaInvalida> LinhasInvalidas(sqlite::Connection& banco, const TabelaFixa& tabela,
                                                         bool com_rowid);

/// `nome` as a quoted SQL identifier.
[[nodiscard]] std::string Identificador(std::string_view nome);

}  // namespace tremvik
