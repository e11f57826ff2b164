// The reference database for test classes of either architecture. The system's data connections reach the
// database only from a 64-bit process, so the queries run in one, asked through a pair of pipes.
#pragma once

#include <map>
#include <mutex>
#include <string>

#include "adapters/com/windows_api.h"

namespace tremvik::com_test {

/// What a query found: whether there is a row, and the first row's texts by column name.
struct FirstRow {
  bool found = false;
  std::map<std::string, std::string> texts;
};

/// The process that runs queries; ends with this object.
class SqlProcess {
 public:
  /// Starts `program`. Raises error 429 where it does not start.
  explicit SqlProcess(const std::wstring& program);
  SqlProcess(const SqlProcess&) = delete;
  SqlProcess& operator=(const SqlProcess&) = delete;
  ~SqlProcess();

  /// Runs `sql` on the database file at `path`, both UTF-8. Raises the engine's error of a wrong query. Safe
  /// to use from several threads.
  FirstRow Run(const std::string& path, const std::string& sql);

 private:
  std::string ReadLine();

  std::mutex mutex_;
  HANDLE questions_ = nullptr;
  HANDLE answers_ = nullptr;
  HANDLE process_ = nullptr;
  std::string read_;  ///< what was read beyond the last line
};

}  // namespace tremvik::com_test
