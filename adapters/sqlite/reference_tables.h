// Making and checking the reference database "tblFixas.fix".
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "adapters/sqlite/connection.h"

namespace tremvik {

/// Builds the reference database at `arquivo` from the CSV files in the folder `dados_dir` (UTF-8, comma, one
/// file per table, column names in the first line; a "tables.json" beside them is held to its row counts).
/// The result is what is wrong with them, one text in Portuguese each ("tblEstados.csv:3: ..."): empty when
/// the database was built. An existing `arquivo` is replaced only then, in one step, and only if it is such a
/// database or empty; another file raises 58. Raises the runtime's errors when it cannot be written.
[[nodiscard]] std::vector<std::string> ConstruirTabelas(std::string_view dados_dir, std::string_view arquivo);

/// The same from the rows that are part of the program.
void ConstruirTabelasPadrao(std::string_view arquivo);
/// The database of these rows, in memory.
[[nodiscard]] sqlite::Connection TabelasPadrao();

/// Opens the reference database `arquivo` for reading, in one transaction. Raises 3024, 3045, 3343, 75 when
/// it is none, 3061 or 3078 when a column or table is missing, and 3343 when its rows are not those that were
/// built.
[[nodiscard]] sqlite::Connection AbrirTabelas(const std::string& arquivo);

/// What is missing or malformed in the reference database `arquivo`, one text in Portuguese each: tables,
/// columns, empty tables, rows that no query could use. Empty when nothing is wrong. Raises 3024, 3045, 3343
/// or 75 when it cannot be read as a database at all.
[[nodiscard]] std::vector<std::string> VerificarTabelas(std::string_view arquivo);

}  // namespace tremvik
