#pragma once

#include "host/events.h"
#include "records/pass.h"

namespace tremvik {

/// Runs the validators of the declaration whose header was just read, in file order, and stops at the first
/// refusal. Raises `Progresso` before most steps.
Verdict ValidarDeclaracao(Pass& pass, EstadoCabecalhos& cabecalhos, Events& events);

}  // namespace tremvik
