#pragma once

#include <string_view>

namespace tremvik {

/// The recordset type of all look-ups: a read-only snapshot.
inline constexpr int kSnapshot = 4;

/// Rows of one query. Lives until Close; the engine owns it.
struct Recordset {
  /// Rows reached so far: 0 exactly when the query has no row.
  virtual long RecordCount() = 0;
  /// The text of column `name` in the first row (UTF-8, empty for Null), valid until Close.
  virtual std::string_view Field(std::string_view name) = 0;
  virtual void Close() = 0;

 protected:
  ~Recordset() = default;
};

/// An open reference database. Lives until Close; the engine owns it.
struct Database {
  /// Runs `sql` (UTF-8) and opens its rows; `type` is `kSnapshot`. Raises 3061, 3075, 3078 and the like.
  virtual Recordset& OpenRecordset(std::string_view sql, int type) = 0;
  virtual void Close() = 0;

 protected:
  ~Database() = default;
};

/// The database engine of the reference tables. An implementation may keep a database open behind Close and
/// remember answers for one run, as long as every answer stays the same.
struct ReferenceEngine {
  virtual ~ReferenceEngine() = default;
  /// Opens the database file at `path` (UTF-8), without options. Raises 3024, 3045, 3343 and the like.
  virtual Database& OpenDatabase(std::string_view path) = 0;
};

}  // namespace tremvik
