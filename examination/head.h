// The faults of what stands before the first declaration.
#pragma once

#include <cstddef>

#include "examination/ledger.h"
#include "examination/trial.h"
#include "examination/workpiece.h"

namespace tremvik {

/// Examines the master record, and records before the first header, where none but it belongs.
class HeadExaminer {
 public:
  /// A file with `headers` declarations, the first at line `first_header`. `host` and `ledger` must outlive
  /// this object.
  HeadExaminer(const Host& host, Ledger& ledger, std::size_t headers, int first_header)
      : host_(host), ledger_(ledger), headers_(headers), first_header_(first_header) {}

  /// Finds the faults of these records. Raises the host's run-time errors.
  void Examine(Workpiece& work);

 private:
  [[nodiscard]] TrialText Compose(const Workpiece& work) const;
  bool Mend(Workpiece& work, const TrialText& trial, const Told& told);
  bool MendField(Piece& master, const Finding& finding);

  const Host& host_;
  Ledger& ledger_;
  std::size_t headers_;
  int first_header_;
};

}  // namespace tremvik
