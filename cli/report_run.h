// Files examined one after the other, told in one report.
#pragma once

#include <string>

#include "cli/environment.h"
#include "cli/examiner.h"
#include "cli/file_names.h"
#include "cli/terminal.h"
#include "report/formats.h"

namespace tremvik::cli {

/// What is examined and how it is told.
struct ReportOptions {
  ExaminerOptions exame;
  const report::FormatInfo* formato = nullptr;
  std::string saida;                 ///< file to write; empty or "-" for standard output
  bool so_recusados = false;         ///< accepted files are only counted
  std::string linha_de_base;         ///< file of known findings; empty for none
  std::string gravar_linha_de_base;  ///< file to write all findings to as known; empty for none
  unsigned paralelo = 1;
};

/// Examines all files of `names` and writes their report, in their order; on standard output a summary where
/// the report goes to a file. The worst verdict is returned, known findings left out; what could not be
/// written whole, or was interrupted, leaves an earlier file as it was and is a fault of the environment.
/// Raises the errors of the embedded host.
[[nodiscard]] ExitStatus ReportFiles(FileNames& names, const ReportOptions& options, const Terminal& terminal,
                                     Output& out, Output& err);

}  // namespace tremvik::cli
