// One file through the component, from its first message to what is said about it afterwards.
#pragma once

#include <string>
#include <utility>

#include "adapters/sqlite/embedded_host.h"
#include "cli/console.h"
#include "cli/environment.h"
#include "cli/terminal.h"
#include "report/file_report.h"

namespace tremvik::cli {

class RunTrace;

/// How files are run.
struct RunOptions {
  Modo modo = Modo::kImportar;
  std::string pasta;
  Answers responder = Answers::kAsk;
  bool json = false;
  bool many = false;  ///< one of several files: each is named, nothing is asked
};

/// Runs files one after the other through one embedded host. Not shared between threads.
class Importer {
 public:
  /// Raises the errors of the embedded host. `out` and `err` must outlive this object.
  Importer(const RunOptions& options, const Terminal& terminal, Output& out, Output& err);

  /// Runs the file at `path`. Raises nothing that the component or the host raise.
  ExitStatus Run(const std::string& path);
  /// Which rules the last run told of, for a summary of many files: no places and no texts.
  [[nodiscard]] report::FileReport TakeFindings() { return std::move(findings_); }

 private:
  /// What is said about a file.
  struct Report {
    ExitStatus status = ExitStatus::kFailure;
    Outcome outcome;
    int declaracoes = 0;
    int registros = 0;
    int linha = 0;
    std::string mensagem;
    std::string problema;  ///< sentence on standard error, empty for none
  };
  Report Validate(const std::string& path, RunTrace& trace, bool trace_records);
  void Judge(const std::string& path, Report& report) const;
  void Keep(const std::string& path, Report& report);
  void Complain(const Report& report);
  void Summarize(const std::string& path, const Report& report);

  RunOptions options_;
  Output& out_;
  Output& err_;
  bool colour_;
  Output messages_;  ///< of one of several files, until its name was written
  ProgressBar bar_;
  Console console_;
  report::FileReport findings_;
  EmbeddedHost host_;
};

}  // namespace tremvik::cli
