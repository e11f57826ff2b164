// The desktop database engine, called through its automation objects.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "adapters/com/late_bound.h"
#include "adapters/local/remembered.h"
#include "host/reference_engine.h"

namespace tremvik::com {

/// What a query gave. The engine's own rows are open from the query, or from a question that was not asked
/// before, to Close; what was read of them is remembered.
class DaoRecordset final : public Recordset {
 public:
  /// Runs `sql` in `database`, which outlives this object.
  DaoRecordset(LateBound& database, std::string_view sql, int type);
  long RecordCount() override;
  std::string_view Field(std::string_view name) override;
  void Close() override;

 private:
  LateBound& Rows();

  LateBound& database_;
  std::string sql_;
  int type_;
  std::optional<LateBound> rows_;
  std::optional<long> count_;
  std::map<std::string, std::string, std::less<>> fields_;
};

/// An open database; it stays open behind Close, and a query that is made again costs the engine nothing.
class DaoDatabase final : public Database {
 public:
  explicit DaoDatabase(LateBound object) : object_(std::move(object)) {}
  DaoDatabase(const DaoDatabase&) = delete;
  DaoDatabase& operator=(const DaoDatabase&) = delete;
  /// Closes the engine's database; its failure is nobody's any more.
  ~DaoDatabase();
  Recordset& OpenRecordset(std::string_view sql, int type) override;
  void Close() override {}

 private:
  LateBound object_;
  Remembered<DaoRecordset> answers_;
};

/// The engine, made on first use: DAO.DBEngine.36, else DAO.DBEngine.120; neither is error 429.
class DaoEngine final : public ReferenceEngine {
 public:
  /// The open database where `path` is opened again, else another one in its place.
  Database& OpenDatabase(std::string_view path) override;
  /// Closes the database and forgets the answers, as others may change them between two runs.
  void EndRun() { database_.reset(); }

 private:
  std::optional<LateBound> engine_;
  std::string path_;
  std::optional<DaoDatabase> database_;
};

}  // namespace tremvik::com
