#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "host/reference_engine.h"

namespace tremvik {

namespace sqlite {
class Connection;
}

/// The database engine of the reference tables over SQLite: runs the query texts as they stand. A database
/// stays open behind Close, and thousands of answers are remembered by their query texts, so a look-up that
/// is made again costs neither a query nor an allocation; a database that is replaced meanwhile is not looked
/// at again.
class SqliteReferenceEngine final : public ReferenceEngine {
 public:
  /// Opens the database that the component knows as `path`; raises the runtime's errors.
  using Opening = std::function<sqlite::Connection(std::string_view path)>;
  explicit SqliteReferenceEngine(Opening open);
  ~SqliteReferenceEngine() override;
  SqliteReferenceEngine(const SqliteReferenceEngine&) = delete;
  SqliteReferenceEngine& operator=(const SqliteReferenceEngine&) = delete;

  Database& OpenDatabase(std::string_view path) override;

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace tremvik
