#pragma once

#include "cli/environment.h"
#include "cli/file_names.h"
#include "cli/importer.h"
#include "cli/terminal.h"

namespace tremvik::cli {

/// Validates all files of `names` on `workers` threads, each with its own host, and writes what each has to
/// say in the order of the names, then the findings by rule and by file and a summary line (not with `json`).
/// The worst verdict is returned. With `refused_only` nothing is said of accepted files but in the summary.
/// Stops early when `out` fails or the program is told to end. Raises the errors of the embedded host.
[[nodiscard]] ExitStatus ValidateMany(FileNames& names, const RunOptions& options, bool refused_only,
                                      const Terminal& terminal, unsigned workers, Output& out, Output& err);

}  // namespace tremvik::cli
