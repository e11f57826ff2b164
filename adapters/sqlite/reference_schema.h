// What a row of the reference tables must look like to be found by a look-up.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "adapters/sqlite/connection.h"
#include "adapters/tables/reference_columns.h"

namespace tremvik {

/// A row that no look-up could use, or could use instead of another one.
struct InvalidRow {
  std::int64_t rowid;  ///< 0 unless asked for
  std::string key;     ///< the first column, "CFOP '5.102'"
  std::string words;   ///< what is wrong with it, Portuguese
};

/// The invalid rows of a table that has all its columns. `with_rowid` wants the table's rowid.
[[nodiscard]] std::vector<InvalidRow> InvalidRows(const sqlite::Connection& database,
                                                  const ReferenceTable& table, bool with_rowid);

/// Raises 3061 or 3078 when a table or a column is missing, or a view stands in a table's place.
void DemandTables(const sqlite::Connection& database);
/// True where `name` is a view: what it gives is no row of a table, and its query may never end.
[[nodiscard]] bool IsView(const sqlite::Connection& database, std::string_view name);

/// `name` as a quoted SQL identifier.
[[nodiscard]] std::string Quoted(std::string_view name);

}  // namespace tremvik
