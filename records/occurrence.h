#pragma once

#include "records/pass.h"

namespace tremvik {

/// Reads and checks the occurrences (CR=20) that the header announces, each completely with its details, and
/// hands each accepted record to its writer.
Verdict ValidarCR20(Pass& pass);

}  // namespace tremvik
