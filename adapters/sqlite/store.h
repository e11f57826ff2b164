// The file of accepted declarations: asked by the run, filled after it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "adapters/sqlite/connection.h"

namespace tremvik {

class Store {
 public:
  explicit Store(std::string file) : file_(std::move(file)) {}

  /// True when it holds a declaration of `ie` (dotted) for `referencia` ("AAAA-MM").
  [[nodiscard]] bool Holds(std::string_view ie, std::string_view referencia);
  /// Moves all records of `run`, the temporary database of an ended run, into the store, in one
  /// transaction.
  void Receive(sqlite::Connection& run, std::string_view file_name);
  /// Removes the journals over several databases that killed imports left beside it. The caller holds the
  /// folder against other imports.
  void RemoveAbandonedJournals();
  /// The open store for reading; null where there is none yet.
  [[nodiscard]] sqlite::Connection* Abrir();

 private:
  [[nodiscard]] bool OpenExisting();
  std::string file_;
  sqlite::Connection connection_;
  std::optional<sqlite::Statement> question_;
  bool missing_ = false;  // looked for and not found: the run is the one to make it
};

}  // namespace tremvik
