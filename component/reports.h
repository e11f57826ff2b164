#pragma once

#include "checks/verdict.h"
#include "component/run_state.h"
#include "host/host.h"
#include "input/block_reader.h"
#include "passes/length_pass.h"
#include "passes/reconciliation.h"
#include "records/pass.h"

namespace tremvik {

/// Tells the user of faults and doubts in the component's own words.
class Reports final : public Prompter {
 public:
  Reports(const Host& host, RunState& state, Components& components)
      : host_(host), state_(state), components_(components) {}

  /// Shows `MensagemErro` with the request to contact the file's maker and the line number, raises `Fechar`
  /// and closes the temporary database. Raises what the host raises.
  void ErroSair();

  /// Keeps the refusal's texts as `MensagemErro`, tells its place and goes through `ErroSair`.
  void Relatar(const Refusal& refusal);

  /// The box of the length pass, the pointer set to an arrow and the place told before it.
  void AvisarTamanho(const FileFault& fault);

  /// The same for a run-time error of that pass, which has no place.
  void AvisarErroDeTamanho(std::string_view mensagem);

  /// The box about declarations that are more or fewer than announced.
  void AvisarDeclaracoes(const Refusal& refusal);

  /// The box of the quantity reconciliation, its places told before it.
  void AvisarTotais(const Reconciliation& found);

  /// Ends the run after a validator's refusal: told, unless the user has answered it already; the input file
  /// closed, the pointer set back.
  void TerminarComRecusa(const Refusal& refusal, BlockReader& arquivo);

  Verdict Perguntar(Refusal question) override;

 private:
  const Host& host_;
  RunState& state_;
  Components& components_;
};

}  // namespace tremvik
