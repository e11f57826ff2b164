#pragma once

#include <optional>
#include <string_view>

#include "checks/reference_tables.h"
#include "component/reports.h"
#include "component/run_state.h"
#include "host/host.h"

namespace tremvik {

/// The import of one file: every pass over it, the temporary database around them, and the one place where
/// run-time errors end.
class ImportRun {
 public:
  ImportRun(const Host& host, RunState& state, Components& components, Reports& reports)
      : host_(host),
        state_(state),
        components_(components),
        reports_(reports),
        fixas_(host.engine, host.application),
        arquivo_(host.files, state.NumeroLinha) {}

  /// Validates and imports the file at `path`. How it went is in `bolRetMonitora` and `outcome`; nothing is
  /// raised.
  void Monitora(std::string_view path) noexcept;

  /// The quantity reconciliation over the file at `path`; True when it told something. Raises run-time
  /// errors.
  bool CompararTotais(std::string_view path);

 private:
  [[nodiscard]] Outcome Executar(std::string_view path);
  // What ends the run, where the length pass does.
  [[nodiscard]] std::optional<Outcome> ConferirTamanhos(std::string_view path);
  void PrepararBanco();
  // These are True when they refuse.
  [[nodiscard]] bool ValidarMestre();
  [[nodiscard]] bool ValidarDeclaracoes();
  [[nodiscard]] bool ConferirDeclaracoes();
  // Turns the exception being handled into the message that ends the run.
  void TratarErroAtual() noexcept;

  const Host& host_;
  RunState& state_;
  Components& components_;
  Reports& reports_;
  TabelasFixas fixas_;
  BlockReader arquivo_;
};

}  // namespace tremvik
