#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "adapters/sqlite/reference_schema.h"
#include "text/csv_reader.h"

namespace tremvik {

/// What is wrong with one table, in Portuguese: the first ones are kept, all are counted.
class Problems {
 public:
  /// `where` names the table or its file in front of each.
  explicit Problems(std::string_view where) : where_(where) {}

  void Note(std::string_view words);
  void Note(int line, std::string_view words);
  [[nodiscard]] bool empty() const { return count_ == 0; }
  /// Those kept and, where there are more, a last one that says how many; added to `all`.
  void MoveInto(std::vector<std::string>& all);

 private:
  void Keep(std::string problem);

  std::string where_;
  std::vector<std::string> kept_;
  std::size_t count_ = 0;
};

/// Loads one reference table from its CSV text, remembering on which line of the file each row began.
class TableLoader {
 public:
  /// All must outlive this object. The table exists and is empty.
  TableLoader(const sqlite::Connection& database, const ReferenceTable& table, Problems& problems)
      : database_(database), table_(table), problems_(problems) {}

  void Load(std::string_view csv);
  /// Rows that were loaded.
  [[nodiscard]] std::size_t rows() const { return lines_.size(); }

 private:
  std::vector<std::size_t> ReadHeader(text::CsvReader& reader);
  void ReadRows(text::CsvReader& reader);
  void CheckRows();

  const sqlite::Connection& database_;
  const ReferenceTable& table_;
  Problems& problems_;
  std::vector<int> lines_;
};

}  // namespace tremvik
