// The engine of the reference tables: the one that their file is made for.
#pragma once

#include <optional>
#include <string_view>

#include "adapters/com/dao_engine.h"
#include "adapters/sqlite/reference_engine.h"
#include "host/reference_engine.h"

namespace tremvik::com {

/// A file that begins as an SQLite database is answered by the SQLite inside this library, from a copy in
/// memory; any other, and one that cannot be read, is the desktop engine's. Until EndRun a database stays
/// open and the answers are remembered.
class TablesEngine final : public ReferenceEngine {
 public:
  Database& OpenDatabase(std::string_view path) override;
  /// Lets go of the file and forgets the answers: another run may find other tables.
  void EndRun();

 private:
  ReferenceEngine* chosen_ = nullptr;  ///< in this run; it asks for one file
  std::optional<SqliteReferenceEngine> sqlite_;
  DaoEngine dao_;
};

}  // namespace tremvik::com
