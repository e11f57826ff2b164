#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "adapters/sqlite/store_schema.h"
#include "adapters/sqlite/temporary_database.h"
#include "host/components.h"

namespace tremvik {

/// Writes the records of one kind into the temporary database. After the first records it allocates nothing.
class TableWriter final : public Gravador {
 public:
  /// `temporary` must outlive this object.
  TableWriter(TemporaryDatabase& temporary, Kind kind)
      : temporary_(temporary), table_(TableOf(kind)), cells_(table_.columns.size()) {}

  void CaminhoBase(std::string_view /*caminho*/) override {}
  /// A field that the record kind has not, or one given twice, raises 5.
  void Campo(std::string_view nome, std::string_view texto) override;
  /// Stores the record; a field that was not given is Null.
  void Gravar() override;

 private:
  struct Cell {
    std::string text;
    bool given = false;
  };
  void BindFields(sqlite::Statement& insertion);
  void Clear();

  TemporaryDatabase& temporary_;
  const RecordTable& table_;
  std::vector<Cell> cells_;  // as the table's columns
};

}  // namespace tremvik
