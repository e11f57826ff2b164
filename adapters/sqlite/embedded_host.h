// The embedded host: a folder of this machine, the reference tables and the store of accepted declarations.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "adapters/local/component_folder.h"
#include "host/host.h"
#include "host/outcome.h"

namespace tremvik {

/// What a run is for.
enum class Modo : std::uint8_t {
  kImportar,  ///< accepted declarations go into the store
  kValidar    ///< the same verdicts; nothing is kept
};

struct EmbeddedHostOptions {
  std::string pasta;  ///< the component's folder; made when it does not exist
  Modo modo = Modo::kImportar;
  std::string config_home = ConfigHome();  ///< where the per-user settings lie
};

/// Everything that the component reaches, on this machine. To import one file: make the host, set the
/// component up with `host()`, call `AcompanharLinha`, run `Monitora` and, when the file was accepted,
/// `Consolidar`.
/// One object serves several runs, one after the other, each with its own instance of the component.
class EmbeddedHost {
 public:
  /// Makes the folder and the default reference tables where they are missing. `kImportar` holds the folder
  /// against other imports as long as this object lives and raises 3045 when another one holds it; `kValidar`
  /// writes nothing but missing reference tables, which stay in memory where the folder cannot be written.
  /// Raises file errors. The three references must outlive this object.
  EmbeddedHost(EmbeddedHostOptions options, Screen& screen, Events& events, Diagnostics& diagnostics);
  /// Drops what the last run left unless it was consolidated.
  ~EmbeddedHost();
  EmbeddedHost(const EmbeddedHost&) = delete;
  EmbeddedHost& operator=(const EmbeddedHost&) = delete;

  /// The component's view of it; valid as long as this object.
  [[nodiscard]] Host host();
  /// Tells how to learn the number of the record that the component reads; the writers store it. Before the
  /// first record is written; usually bound to `NroLinha` of the instance.
  void AcompanharLinha(std::function<int()> linha);
  /// Moves the declarations of the run that ended as `outcome` says into the store, all or none, under the
  /// file name `nome_do_arquivo`, and removes the temporary database. Does nothing in `kValidar`. Raises 5
  /// when the file was not accepted or no run has ended, 3022 when the store came to hold one of them
  /// meanwhile, and the errors of a store.
  void Consolidar(const Outcome& outcome, std::string_view nome_do_arquivo);

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace tremvik
