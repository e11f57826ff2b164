// A thin owner of SQLite connections and statements; every failure becomes a run-time error.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "host/runtime_error.h"

namespace tremvik::sqlite {

/// Numbers of the engine's errors that the runtime's table does not describe; the first is this store's own.
inline constexpr int kNewerVersion = 3999;
inline constexpr int kNoCurrentRecord = 3021;
inline constexpr int kDuplicateValues = 3022;
inline constexpr int kItemNotFound = 3265;

/// The run-time error that says what the connection's last failure was, with the database's path.
[[nodiscard]] RuntimeError EngineError(sqlite3* connection, int code);

/// A prepared statement. Parameters count from 1, columns from 0.
class Statement {
 public:
  Statement() = default;

  Statement& Bind(int parameter, std::int64_t value);
  /// `text` is not copied: it must stay until the next Reset or Run.
  Statement& Bind(int parameter, std::string_view text);
  Statement& BindNull(int parameter);
  /// True when there is a row.
  [[nodiscard]] bool Step();
  /// Steps to the end and resets.
  void Run();
  void Reset() { sqlite3_reset(statement_.get()); }

  /// Valid until the next step.
  [[nodiscard]] std::string_view Text(int column) const;
  [[nodiscard]] std::int64_t Integer(int column) const {
    return sqlite3_column_int64(statement_.get(), column);
  }
  [[nodiscard]] int Type(int column) const { return sqlite3_column_type(statement_.get(), column); }
  [[nodiscard]] int Columns() const { return sqlite3_column_count(statement_.get()); }
  [[nodiscard]] std::string_view Name(int column) const {
    return sqlite3_column_name(statement_.get(), column);
  }

 private:
  friend class Connection;
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };
  explicit Statement(sqlite3_stmt* statement) : statement_(statement) {}
  void Check(int code) const;

  std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

/// An open database file, for one thread at a time.
class Connection {
 public:
  Connection() = default;
  /// Opens `path` with SQLITE_OPEN flags. Another connection's lock is waited for up to `wait_ms`.
  Connection(const std::string& path, int flags, int wait_ms = 0);

  [[nodiscard]] explicit operator bool() const { return connection_ != nullptr; }
  [[nodiscard]] sqlite3* get() const { return connection_.get(); }
  /// Runs statements without parameters and rows.
  void Execute(const std::string& sql) const;
  /// `lasting`: the statement is kept for long.
  [[nodiscard]] Statement Prepare(std::string_view sql, bool lasting = false) const;
  /// The one number that `sql` gives.
  [[nodiscard]] std::int64_t Number(std::string_view sql) const;
  void Close() { connection_.reset(); }

 private:
  struct CloseConnection {
    void operator()(sqlite3* connection) const { sqlite3_close_v2(connection); }
  };
  std::unique_ptr<sqlite3, CloseConnection> connection_;
};

/// A transaction that is undone unless it was committed.
class Transaction {
 public:
  explicit Transaction(Connection& connection) : connection_(connection) {
    connection_.Execute("BEGIN IMMEDIATE");
  }
  ~Transaction() {
    if (!committed_) sqlite3_exec(connection_.get(), "ROLLBACK", nullptr, nullptr, nullptr);
  }
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  void Commit() {
    connection_.Execute("COMMIT");
    committed_ = true;
  }

 private:
  Connection& connection_;
  bool committed_ = false;
};

}  // namespace tremvik::sqlite
