#pragma once

#include "host/components.h"
#include "records/pass.h"
#include "records/state.h"

namespace tremvik {

/// Checks the fields of the current header (CR=05) and stores its quantities.
Verdict ValidarCR05(Pass& pass, EstadoCabecalhos& cabecalhos);

/// Checks the header against itself and against the header before it; when it passes, its key becomes the
/// previous one.
Verdict ValidarCR05Cruzado(const Pass& pass, EstadoCabecalhos& cabecalhos);

/// Asks the host whether it already holds a declaration of that taxpayer for that reference.
Verdict VerificarReferenciaExistente(const Pass& pass);

/// Hands the accepted header to its writer: registration numbers dotted, values as "1.234,56", the rest as it
/// stands.
void GravarCR05(const Pass& pass);

}  // namespace tremvik
