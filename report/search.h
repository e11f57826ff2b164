// Which rule a message comes from, typed as it was heard over the telephone.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "report/catalogue.h"

namespace tremvik::report {

/// A rule that a text may come from.
struct Candidate {
  const Rule* regra = nullptr;
  double semelhanca = 0;  ///< 1 for the rule's whole text, less for a part or with faults; at most 1
  bool melhor = false;    ///< no other rule's text is nearer; several rules may share it
};

/// The rules whose message `typed` (UTF-8) may be, the nearest first. Accents, case, blanks, line breaks,
/// punctuation and what stands around the rule's own text may be missing or wrong; what a run fills in may be
/// anything; words may be missing or misspelt. Empty where nothing is near enough to be meant.
[[nodiscard]] std::vector<Candidate> FindByMessage(std::string_view typed);

/// The code that `typed` is, as the catalogue spells it: "cr10-7", "regra CR 10 07" and "1007" behind "CR"
/// are "CR10-07", "erro 13" is "ERR-13". Empty for a text that is no code; the rule need not exist.
[[nodiscard]] std::string CodeIn(std::string_view typed);

}  // namespace tremvik::report
