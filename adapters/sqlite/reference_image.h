// The reference database "tblFixas.fix" from the bytes of its file, wherever they were read.
#pragma once

#include <string_view>

#include "adapters/sqlite/connection.h"
#include "adapters/sqlite/reference_digest.h"

namespace tremvik {

/// What every SQLite database file begins with.
inline constexpr std::string_view kSqliteMark{"SQLite format 3\0", 16};
/// What is said of a file that is not the one that was built.
inline constexpr std::string_view kChanged =
    "o arquivo não é mais o que \"tremvik tabelas construir\" gravou (o resumo não confere)";

/// Raises 3343 when the rows of `arquivo` are not those that were built, 3061 or 3078 when one that was made
/// by other means lacks a column or a table.
void DemandReferenceTables(const sqlite::Connection& database, DigestState digest, std::string_view arquivo);

/// Opens a copy of `bytes`, the whole file `arquivo`, in memory. Raises 3343 when they are no database, and
/// as above.
[[nodiscard]] sqlite::Connection AbrirImagem(std::string_view bytes, std::string_view arquivo);

}  // namespace tremvik
