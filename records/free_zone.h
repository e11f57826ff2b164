#pragma once

#include "records/pass.h"

namespace tremvik {

/// Reads and checks the free-zone shipments (CR=18) that the interstate detail announces and hands each to
/// its writer as it stands. Their content has no rules yet.
Verdict ValidarCR18(Pass& pass);

}  // namespace tremvik
