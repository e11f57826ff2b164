#pragma once

#include "cli/verb.h"

namespace tremvik::cli {

/// Does what the user asks for. Errors of the machine become a sentence on `err`; others are raised.
[[nodiscard]] ExitStatus Execute(Verb& verb, const Terminal& terminal, Output& out, Output& err);

}  // namespace tremvik::cli
