// The desktop database engine, called through its automation objects.
#pragma once

#include <list>
#include <optional>
#include <string>

#include "adapters/com/late_bound.h"
#include "host/reference_engine.h"

namespace tremvik::com {

class DaoDatabase;

/// The rows of one query.
class DaoRecordset final : public Recordset {
 public:
  DaoRecordset(DaoDatabase& owner, LateBound object) : owner_(owner), object_(std::move(object)) {}
  long RecordCount() override;
  std::string_view Field(std::string_view name) override;
  void Close() override;

 private:
  DaoDatabase& owner_;
  LateBound object_;
  std::list<std::string> texts_;  ///< what Field gave out
};

class DaoEngine;

/// An open database and its open recordsets.
class DaoDatabase final : public Database {
 public:
  DaoDatabase(DaoEngine& owner, LateBound object) : owner_(owner), object_(std::move(object)) {}
  Recordset& OpenRecordset(std::string_view sql, int type) override;
  void Close() override;
  void Forget(const DaoRecordset& closed);

 private:
  DaoEngine& owner_;
  LateBound object_;
  std::list<DaoRecordset> recordsets_;
};

/// The engine, made on first use: DAO.DBEngine.36, else DAO.DBEngine.120; neither is error 429.
class DaoEngine final : public ReferenceEngine {
 public:
  Database& OpenDatabase(std::string_view path) override;
  void Forget(const DaoDatabase& closed);

 private:
  LateBound& engine();

  std::optional<LateBound> engine_;
  std::list<DaoDatabase> databases_;
};

}  // namespace tremvik::com
