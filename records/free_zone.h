#pragma once

#include "records/pass.h"

namespace tremvik {

/// Reads and checks `quantidade` free-zone shipments (CR=18) of the current interstate detail and hands each
/// to its writer as it stands. Their content has no rules yet.
Verdict ValidarCR18(Pass& pass, int quantidade);

}  // namespace tremvik
