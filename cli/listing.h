#pragma once

#include "cli/command_line.h"
#include "cli/environment.h"
#include "cli/terminal.h"

namespace tremvik::cli {

/// Writes the declarations of the store in `request.pasta`, those of one taxpayer, or one declaration's
/// records. Raises the errors of the store.
[[nodiscard]] ExitStatus List(const Request& request, const Terminal& terminal, Output& out, Output& err);

}  // namespace tremvik::cli
