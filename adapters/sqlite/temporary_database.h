// The temporary database of one run: made empty, renamed by the run, written in one transaction, ended.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "adapters/local/component_folder.h"
#include "adapters/local/system.h"
#include "adapters/sqlite/connection.h"
#include "host/components.h"

namespace tremvik {

/// Keys of the record that is about to be written.
struct RecordKey {
  std::int64_t declaration;  ///< number of the declaration in the run, from 1
  std::int64_t line;         ///< line of the record in the file
  std::int64_t parent;       ///< line of the record that it details, 0 where it details none
};

/// Its file loses its name as soon as it is open, so nothing of it stays behind however the program ends.
class TemporaryDatabase {
 public:
  /// `folder` must outlive this object.
  explicit TemporaryDatabase(const ComponentFolder& folder) : folder_(folder) {}
  ~TemporaryDatabase() { Discard(); }
  TemporaryDatabase(const TemporaryDatabase&) = delete;
  TemporaryDatabase& operator=(const TemporaryDatabase&) = delete;

  /// Tells the line of the record being read.
  void AcompanharLinha(std::function<int()> linha) { line_ = std::move(linha); }

  /// Makes an empty "BDTemp.mdb", for this user alone; what an earlier run left is removed. From here to
  /// `Abrir` signals wait.
  void Preparar();
  /// Opens the database at `caminho`, removes its name and begins its transaction; the handle is always 1.
  std::int16_t Abrir(std::string_view caminho);
  /// Ends the transaction; may be called at any time and again.
  void Encerrar();
  /// Closes the database and removes its files. Raises nothing.
  void Discard() noexcept;

  /// The database of a run that was ended; null when there is none.
  [[nodiscard]] sqlite::Connection* Ended() { return ended_ ? &connection_ : nullptr; }

  /// Numbers the next record of kind `kind`. A record without the header or parent that it needs
  /// raises 5.
  [[nodiscard]] RecordKey NewKey(Kind kind);
  /// The statement that writes a record of that kind. Raises 3420 when the database is not open.
  [[nodiscard]] sqlite::Statement& Insertion(Kind kind);

 private:
  void FinalizeInsertions();
  void Remove();

  const ComponentFolder& folder_;
  std::function<int()> line_;
  sqlite::Connection connection_;
  ByKind<std::optional<sqlite::Statement>> insertions_;
  ByKind<std::int64_t> last_line_;
  std::int64_t declarations_ = 0;
  bool ended_ = false;
  std::optional<HeldSignals> held_;  // while the file has a name
};

}  // namespace tremvik
