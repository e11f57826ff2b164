// The reference tables: their names, files and columns.
#pragma once

#include <span>
#include <string_view>

namespace tremvik {

/// A column; whole numbers apart, all are texts ("1.10" and "1.1" are different codes).
struct ReferenceColumn {
  std::string_view name;
  bool integer = false;
  bool indexed = false;
};

/// A reference table. Its first column names a row to the user.
struct ReferenceTable {
  std::string_view name;
  std::string_view file;  ///< the CSV file of its rows
  std::span<const ReferenceColumn> columns;
};

/// The eight reference tables.
[[nodiscard]] std::span<const ReferenceTable> ReferenceTables();

}  // namespace tremvik
