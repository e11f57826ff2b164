// The faults of one declaration after the other.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>

#include "examination/ledger.h"
#include "examination/trial.h"
#include "examination/workpiece.h"

namespace tremvik {

/// Examines declarations in file order. Each is tried behind the header of the one before it, so that order
/// and duplicates are seen; what a trial tells is mended and tried again, until the component accepts it.
class DeclarationExaminer {
 public:
  /// `host` and `ledger` must outlive this object.
  DeclarationExaminer(const Host& host, Ledger& ledger) : host_(host), ledger_(ledger) {}

  /// Takes note of the header of a declaration that needs no examination.
  void Pass(std::string_view header);
  /// Finds the faults of a declaration, whose header is the first piece. Raises the host's run-time errors.
  void Examine(Workpiece& work);

 private:
  void UndoShifts(Workpiece& work);
  [[nodiscard]] TrialText Compose(const Workpiece& work) const;
  bool Mend(Workpiece& work, const TrialText& trial, const TrialResult& result);
  bool MendOne(Workpiece& work, const TrialText& trial, const TrialResult& result, const Told& told);
  bool MendError(Workpiece& work, const TrialText& trial, const TrialResult& result);

  const Host& host_;
  Ledger& ledger_;
  Suppressed suppressed_;
  std::string previous_;  // the last sound header, without quantities
  // Of the declaration at work.
  bool alone_ = false;                              // nothing of it can be held against the one before
  std::map<std::string, int, std::less<>> mended_;  // fields of its header, and how often
};

}  // namespace tremvik
