// The part of SQL that look-ups in the reference tables use.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tremvik::memory {

/// A whole number or a text.
using Cell = std::variant<std::int64_t, std::string>;

/// A table in memory.
struct Table {
  std::string_view name;
  std::vector<std::string_view> columns;
  std::vector<std::vector<Cell>> rows;

  /// The place of a column, its name's ASCII letters in any case. Raises 3061 when there is none.
  [[nodiscard]] std::size_t Column(std::string_view column) const;
};

/// A condition on one row: a column, a literal, or an operation on one or two conditions.
struct Condition {
  enum class Operation : std::uint8_t { kColumn, kLiteral, kEqual, kGreater, kNot, kAnd, kOr };

  Operation operation = Operation::kLiteral;
  std::size_t column = 0;
  Cell literal;
  std::unique_ptr<Condition> left;
  std::unique_ptr<Condition> right;

  /// True where the row meets it: a number other than 0.
  [[nodiscard]] bool Holds(const std::vector<Cell>& row) const;
};

/// SELECT column FROM table WHERE condition.
struct Query {
  const Table* table = nullptr;
  std::size_t column = 0;
  std::unique_ptr<Condition> where;
};

/// Takes a query apart. Raises 3075 when it is malformed, 3078 when none of `tables` has its name, 3061 when
/// the table lacks a column.
[[nodiscard]] Query ParseQuery(std::string_view sql, const std::vector<Table>& tables);

}  // namespace tremvik::memory
