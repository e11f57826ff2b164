// Making and checking the reference database "tblFixas.fix".
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tremvik {

/// Builds the reference database at `arquivo` from the CSV files in the folder `dados_dir` (UTF-8, comma, one
/// file per table, column names in the first line; a "tables.json" beside them is held to its row counts).
/// The result is what is wrong with them, one text in Portuguese each ("tblEstados.csv:3: ..."): empty when
/// the database was built. An existing `arquivo` is replaced only then, in one step. Raises the runtime's
/// errors when the target cannot be written.
[[nodiscard]] std::vector<std::string> ConstruirTabelas(std::string_view dados_dir, std::string_view arquivo);

/// The same from the rows that are part of the program.
void ConstruirTabelasPadrao(std::string_view arquivo);

/// What is missing or malformed in the reference database `arquivo`, one text in Portuguese each: tables,
/// columns, empty tables, rows that no query could use. Empty when nothing is wrong. Raises 3024, 3045 or
/// 3343 when it cannot be read as a database at all.
[[nodiscard]] std::vector<std::string> VerificarTabelas(std::string_view arquivo);

}  // namespace tremvik
