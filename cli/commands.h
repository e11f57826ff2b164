#pragma once

#include "cli/command_line.h"
#include "cli/environment.h"
#include "cli/terminal.h"

namespace tremvik::cli {

/// Does what the user asks for. Errors of the machine become a sentence on `err`; others are raised.
[[nodiscard]] ExitStatus Execute(const Request& request, const Terminal& terminal, Output& out, Output& err);

}  // namespace tremvik::cli
