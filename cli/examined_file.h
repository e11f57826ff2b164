// One file read and examined to be shown.
#pragma once

#include <string>

#include "cli/environment.h"
#include "examination/findings.h"

namespace tremvik::cli {

struct ExaminedFile {
  std::string bytes;
  Examination exame;     ///< empty where the examination could not be made
  std::string problema;  ///< a sentence that says why it could not be read or examined; empty for nothing
  bool lido = false;     ///< `bytes` are the file's
};

/// Reads the file at `path` and finds its faults with the reference tables of `pasta`, a thousand at most.
/// Questions are findings. What goes wrong is told in the result.
[[nodiscard]] ExaminedFile ReadAndExamine(const std::string& path, const std::string& pasta);

}  // namespace tremvik::cli
