#pragma once

#include "records/pass.h"

namespace tremvik {

/// Reads and checks the interstate details (CR=14) that the CFOP detail announces, each with its free-zone
/// shipments, and hands each to its writer as it stands. Their content has no rules yet.
Verdict ValidarCR14(Pass& pass);

}  // namespace tremvik
