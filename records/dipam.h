#pragma once

#include "records/pass.h"

namespace tremvik {

/// Reads and checks the DIPAM values (CR=30) that the header announces and hands each to its writer as it
/// stands. Their content has no rules yet.
Verdict ValidarCR30(Pass& pass);

}  // namespace tremvik
