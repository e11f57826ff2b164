#pragma once

#include <memory>
#include <string_view>

#include "adapters/local/component_folder.h"
#include "host/reference_engine.h"

namespace tremvik {

/// The database engine of the reference tables over SQLite: runs the query texts as they stand. A database
/// stays open behind Close, and thousands of answers are remembered by their query texts, so a look-up that
/// is made again costs neither a query nor an allocation; a database that is replaced meanwhile is not looked
/// at again.
class SqliteReferenceEngine final : public ReferenceEngine {
 public:
  /// `folder` must outlive this object.
  explicit SqliteReferenceEngine(const ComponentFolder& folder);
  ~SqliteReferenceEngine() override;
  SqliteReferenceEngine(const SqliteReferenceEngine&) = delete;
  SqliteReferenceEngine& operator=(const SqliteReferenceEngine&) = delete;

  /// Whatever path is opened, the program's own rows answer, from memory.
  void UseBuiltInTables();
  Database& OpenDatabase(std::string_view path) override;

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace tremvik
