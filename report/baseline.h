// Findings that are known and no longer count: a run is judged by those that are new.
#pragma once

#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>

#include "report/file_report.h"

namespace tremvik::report {

/// The text is no baseline; `what` says why, a part of a sentence in Portuguese.
class BaselineError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The known findings of files, by the files' names. Its findings carry no lines, so that records which come
/// in before them change nothing.
class Baseline {
 public:
  /// Reads what `Text` wrote, also after people changed it. Raises BaselineError.
  [[nodiscard]] static Baseline Parse(std::string_view text);

  /// Takes all findings of a file for known.
  void Add(const FileReport& file);
  /// Takes out of `file` the findings that are known and tells those that are gone. Of declarations with
  /// lines that were not examined nothing is told to be gone, nor of any where the limit was reached.
  void Apply(FileReport& file) const;
  /// A JSON document of a line for each finding, in an order that is always the same.
  [[nodiscard]] std::string Text() const;

 private:
  using Known = std::set<KnownFinding>;
  std::map<std::string, Known> files_;  ///< by `NameOf` of the file
};

}  // namespace tremvik::report
