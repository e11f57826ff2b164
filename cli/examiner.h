// One file examined, as a report takes it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "adapters/sqlite/embedded_host.h"
#include "anonymizer/masked_report.h"
#include "cli/environment.h"
#include "cli/silence.h"
#include "report/file_report.h"

namespace tremvik::cli {

/// How files are examined.
struct ExaminerOptions {
  std::string pasta;
  bool todas = false;  ///< every fault; else what an import tells of the file
  std::size_t limite = 0;
  bool responder_sim = false;
  bool digest = false;                   ///< the files' SHA-256 is wanted
  std::optional<std::uint64_t> mascara;  ///< the seed of what reports show in the place of the files' numbers
};

/// A file's report, and what it means to who called the program. Known findings do not count yet.
struct Examined {
  report::FileReport report;
  ExitStatus status = ExitStatus::kFailure;
  std::optional<anonymizer::Mask> mascara = {};  ///< where one was asked for
};

/// Is told how many declarations are done, of how many.
using Progress = std::function<void(std::size_t, std::size_t)>;

/// Examines files one after the other through one embedded host. Not shared between threads.
class Examiner {
 public:
  /// Makes the component's folder and its tables where they are missing. Raises the errors of the host.
  explicit Examiner(ExaminerOptions options);

  /// Examines the file at `path`; `progresso` is told how many of its declarations are done, of how many.
  /// What cannot be examined is told in the report: nothing of the host's is raised.
  [[nodiscard]] Examined Examine(const std::string& path, const Progress& progresso);

 private:
  Examined ExamineFile(const std::string& path, const Progress& progresso);
  Examination ExamineBytes(std::string_view bytes, const Progress& progresso);

  ExaminerOptions options_;
  Silence silence_;
  EmbeddedHost host_;
};

/// What identifies the reference tables in `pasta`: the SHA-256 of their database, or "do programa" where
/// the program's own rows serve without one.
[[nodiscard]] std::string TablesInUse(const std::string& pasta);

}  // namespace tremvik::cli
