#pragma once

#include "records/pass.h"

namespace tremvik {

/// Reads and checks the payments (CR=07) that the header announces and hands each accepted one to its writer.
Verdict ValidarCR07(Pass& pass);

}  // namespace tremvik
