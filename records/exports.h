#pragma once

#include "records/pass.h"

namespace tremvik {

/// Reads and checks the export registrations (CR=31) that the header announces and hands each accepted one to
/// its writer.
Verdict ValidarCR31(Pass& pass);

}  // namespace tremvik
