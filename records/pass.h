// What the validators of one declaration work with.
#pragma once

#include "checks/reference_tables.h"
#include "checks/verdict.h"
#include "host/components.h"
#include "input/block_reader.h"
#include "layout/registros.h"
#include "records/state.h"

namespace tremvik {

/// Asks the user whether to go on in spite of a doubtful value.
struct Prompter {
  virtual ~Prompter() = default;
  /// Shows the contact header, the texts of `question` and "Deseja continuar Sim/Não ? ". `Accepted` after
  /// Yes; after No the question comes back as a refusal that is already answered.
  virtual Verdict Perguntar(Refusal question) = 0;
};

/// The collaborators of the validators of one declaration. Every validator reads its records from `arquivo`
/// in file order and stops at the first fault; run-time errors of the host pass through.
struct Pass {
  BlockReader& arquivo;
  Registros& registros;
  EstadoDeclaracao& declaracao;
  TabelasFixas& fixas;
  Components& componentes;
  Prompter& prompter;
};

}  // namespace tremvik
