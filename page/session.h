// What a page knows: the files that it examined, and the reports on them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "adapters/memory/bare_host.h"
#include "examination/examination.h"
#include "report/file_report.h"

namespace tremvik::page {

/// The catalogue of rules as a JSON array.
[[nodiscard]] std::string RulesAsJson();

/// The files of one page, numbered from 0 in the order in which they were examined.
class Session {
 public:
  /// Examines a file and keeps it; its findings as JSON: the object that a JSON report has for a file, with
  /// the wrong columns of each finding besides ("marcas").
  [[nodiscard]] std::string Examine(std::string name, std::string bytes, const ExaminationOptions& options);

  /// The report on all files in the form of that name. Raises std::invalid_argument where there is none.
  [[nodiscard]] std::string Report(std::string_view form, bool masked) const;

  /// Drops all files.
  void Forget() { files_.clear(); }

 private:
  BareHost host_;
  std::vector<report::FileReport> files_;
};

}  // namespace tremvik::page
