// The findings of an examination as they come in: each told once, up to the limit.
#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "examination/findings.h"
#include "examination/shift.h"
#include "examination/workpiece.h"

namespace tremvik {

class Ledger {
 public:
  /// Takes at most `limit` findings; 0 stands for no limit.
  explicit Ledger(std::size_t limit) : limit_(limit) {}

  [[nodiscard]] bool Full() const { return limit_ > 0 && result.inconsistencias.size() >= limit_; }
  /// Adds a finding whose line is the file's, unless the same, or what causes it, was told before.
  void Tell(Finding finding);
  /// Adds a finding of a trial, at the line where `piece` stands in the file.
  void TellAt(const Piece& piece, Finding finding);
  /// Adds lines, both included, that cannot be examined.
  void NotExamined(int from, int to, std::string porque);
  /// The same for the records that stood under `parent`, which went out before they were read.
  void LeftOut(const Workpiece& work, std::size_t parent, const std::vector<std::size_t>& records);
  /// Gives the findings of a line a reason.
  void Because(int linha, std::string_view porque);
  /// Marks what the importer itself tells and puts all in the order of the lines.
  void Close(const std::vector<Finding>& importer);

  Examination result;
  Shifts shifts;  ///< lines whose faults have a common cause, which is told once

 private:
  std::size_t limit_;
  std::set<std::pair<int, std::string>> told_;  // line and rule
};

}  // namespace tremvik
