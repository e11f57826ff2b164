// What a page knows: the files that it examined, and the reports on them.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "adapters/memory/bare_host.h"
#include "examination/examination.h"
#include "report/file_report.h"
#include "report/file_tree.h"

namespace tremvik::page {

/// The catalogue of rules as a JSON array.
[[nodiscard]] std::string RulesAsJson();

/// The codes of the rules that a typed message may come from, the most likely first, as a JSON array.
[[nodiscard]] std::string SearchAsJson(std::string_view typed);

/// The files of one page, numbered from 0 in the order in which they were examined.
class Session {
 public:
  /// Examines a file and keeps it; its findings as JSON: the object that a JSON report has for a file, with
  /// the wrong columns of each finding ("marcas") and the file's declarations ("declaracoes") besides.
  [[nodiscard]] std::string Examine(std::string name, std::string bytes, const ExaminationOptions& options);

  /// The records of lines `from` to `to` of a file as JSON, their fields by name and value.
  [[nodiscard]] std::string Records(std::size_t file, int from, int to);

  /// The report on all files in the form of that name; `masked`, with other registrations, keys and amounts.
  /// Raises std::invalid_argument where there is none.
  [[nodiscard]] std::string Report(std::string_view form, bool masked);

  /// Drops all files.
  void Forget() {
    files_.clear();
    tree_.reset();
  }

 private:
  const report::FileTree& TreeOf(std::size_t file);

  BareHost host_;
  std::vector<report::FileReport> files_;
  std::unique_ptr<report::FileTree> tree_;  ///< of the file that was asked for last
  std::size_t tree_of_ = 0;
};

}  // namespace tremvik::page
