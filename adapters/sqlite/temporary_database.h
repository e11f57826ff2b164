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
struct ChaveDeRegistro {
  std::int64_t declaracao;  ///< number of the declaration in the run, from 1
  std::int64_t linha;       ///< line of the record in the file
  std::int64_t pai;         ///< line of the record that it details, 0 where it details none
};

/// Its file loses its name as soon as it is open, so nothing of it stays behind however the program ends.
class TemporaryDatabase {
 public:
  /// `folder` must outlive this object.
  explicit TemporaryDatabase(const ComponentFolder& folder) : folder_(folder) {}
  ~TemporaryDatabase() { Descartar(); }
  TemporaryDatabase(const TemporaryDatabase&) = delete;
  TemporaryDatabase& operator=(const TemporaryDatabase&) = delete;

  /// Tells the line of the record being read.
  void AcompanharLinha(std::function<int()> linha) { linha_ = std::move(linha); }

  /// Makes an empty "BDTemp.mdb", for this user alone; what an earlier run left is removed. From here to
  /// `Abrir` signals wait.
  void Preparar();
  /// Opens the database at `caminho`, removes its name and begins its transaction; the handle is always 1.
  std::int16_t Abrir(std::string_view caminho);
  /// Ends the transaction; may be called at any time and again.
  void Encerrar();
  /// Closes the database and removes its files. Raises nothing.
  void Descartar() noexcept;

  /// The database of a run that was ended; null when there is none.
  [[nodiscard]] sqlite::Connection* Encerrado() { return encerrado_ ? &connection_ : nullptr; }

  /// Numbers the next record of kind `registro`. A record without the header or parent that it needs
  /// raises 5.
  [[nodiscard]] ChaveDeRegistro NovaChave(Kind registro);
  /// The statement that writes a record of that kind. Raises 3420 when the database is not open.
  [[nodiscard]] sqlite::Statement& Insercao(Kind registro);

 private:
  void FinalizeInsertions();
  void Remover();

  const ComponentFolder& folder_;
  std::function<int()> linha_;
  sqlite::Connection connection_;
  ByKind<std::optional<sqlite::Statement>> insercoes_;
  ByKind<std::int64_t> ultima_linha_;
  std::int64_t declaracoes_ = 0;
  bool encerrado_ = false;
  std::optional<HeldSignals> held_;  // while the file has a name
};

}  // namespace tremvik
