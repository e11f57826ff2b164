// The tables of the stored records: the same columns in the temporary database and in the store.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "host/components.h"

namespace tremvik {

/// How a field's text becomes a column's value. A text that has not the form is stored as it stands.
enum class Form : std::uint8_t {
  kText,     ///< as it comes
  kInteger,  ///< digits, stored as a whole number
  kValue,    ///< "1.234,56", stored as it comes and, in a column "..._centavos" beside it, as 123456
  kDate,     ///< "AAAA/MM/DD", stored as "AAAA-MM-DD"
  kMonth,    ///< "20/MM/AAAA", stored as "AAAA-MM"
  kPeriod    ///< "AAAAMM", stored as "AAAA-MM"; zeros are Null
};

/// One column, named after the record field that fills it.
struct StoredColumn {
  std::string_view field;
  std::string_view name;
  Form form = Form::kText;
};

/// The table of one record kind. Every table but the header's has the columns "declaracao_id" and "linha" as
/// its key; a detail also has the line of the record that it belongs to.
struct RecordTable {
  Kind kind;
  std::string_view name;
  std::optional<Kind> parent;  ///< the kind that this one details, other than the header
  std::span<const StoredColumn> columns;
};

/// The twelve tables, in the order of `kStoredKinds`.
[[nodiscard]] std::span<const RecordTable> RecordTables();
/// The table of a kind that is stored; another one raises 5.
[[nodiscard]] const RecordTable& TableOf(Kind kind);

/// Columns before those of the fields: header "id", "linha"; others "declaracao_id", "linha" and the parent's
/// line if they have a parent.
[[nodiscard]] int KeyColumns(const RecordTable& table);
/// The name of the column that holds the parent's line ("cfop_linha").
[[nodiscard]] std::string ParentColumn(const RecordTable& table);

/// The statements that make the temporary database's tables; "linha" is their only key.
[[nodiscard]] std::string TemporarySchema();
/// The statement that writes one record: parameters are the key columns, then each field's columns.
[[nodiscard]] std::string InsertionSql(const RecordTable& table);
/// The statements that make the store's tables, the store being attached as "banco".
[[nodiscard]] std::string StoreSchema();
/// The statement that moves a table's rows from the temporary database into the store, attached as "banco".
/// Parameter 1 is added to the declarations' numbers; the header's parameter 2 is the import's number.
[[nodiscard]] std::string TransferSql(const RecordTable& table);

}  // namespace tremvik
