#pragma once

#include "records/cfop_validity.h"
#include "records/pass.h"

namespace tremvik {

/// Reads and checks the CFOP details (CR=10) that the header announces, each with its interstate details,
/// hands each accepted one to its writer and adds it to the declaration's sums.
Verdict ValidarCR10(Pass& pass);

/// Field checks of the current CFOP detail; stores Q14 unless the declaration's regime is 4.
Verdict ValidarCamposCR10(Pass& pass, const Cfop& cfop);

/// Checks the fields of the current CFOP detail against each other and against the declaration; a tax above a
/// quarter of its base is asked about.
Verdict ValidarCruzadoCR10(const Pass& pass, const Cfop& cfop);

}  // namespace tremvik
