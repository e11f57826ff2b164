#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "adapters/local/replacement.h"
#include "cli/terminal.h"

namespace tremvik::cli {

/// Where a report goes: standard output, or a file that is only there once the report is whole. What could
/// not be written is told by `problem`; nothing is raised.
class ReportSink {
 public:
  /// `path` names the file; empty or "-" is standard output, which `out` stands for. A path at which a device
  /// or a pipe stands is written straight away.
  ReportSink(const std::string& path, Output& out);
  ~ReportSink();
  ReportSink(const ReportSink&) = delete;
  ReportSink& operator=(const ReportSink&) = delete;

  [[nodiscard]] bool ToFile() const { return to_file_; }
  void Write(std::string_view text);
  /// Hands on what was collected, so that a reader sees it.
  void Flush();
  /// The report is whole: the file takes its place.
  void Finish();
  [[nodiscard]] bool failed() const { return !problem_.empty() || (!to_file_ && out_.failed()); }
  /// A sentence about the file; empty when nothing is wrong with it. What is wrong with standard output is
  /// told by `out`.
  [[nodiscard]] const std::string& problem() const { return problem_; }

 private:
  void WriteThrough();

  std::string path_;
  Output& out_;
  bool to_file_;
  std::optional<Replacement> file_;
  Descriptor device_;
  std::string pending_;
  std::string problem_;
};

}  // namespace tremvik::cli
