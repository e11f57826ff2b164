// One run of the component over records in memory, and what it told.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "examination/findings.h"
#include "host/host.h"
#include "host/outcome.h"

namespace tremvik {

/// The pass of a run that told something.
enum class RunPass : std::uint8_t { kLengths = 1, kQuantities = 2, kRules = 3 };

/// A finding whose line counts the records of the trial, and the pass that told it.
struct Told {
  Finding finding;
  RunPass pass = RunPass::kLengths;
};

struct TrialResult {
  Outcome outcome;
  std::vector<Told> told;
  bool invalid_document = false;  ///< the check digits asked for last are wrong
  bool held = false;              ///< the declaration asked for last is held already
  int declaracoes = 0;            ///< headers accepted
  int ultima_linha = 0;           ///< the record read last
  RunPass ended_in = RunPass::kLengths;
  std::string last_message;  ///< of its last message box

  [[nodiscard]] bool accepted() const { return outcome.estado == Outcome::Estado::kAceito; }
  /// The end of a run that told of no place, as a finding.
  [[nodiscard]] Finding EndFinding() const;
};

/// Answers that go before the host's, so that a fault already told does not come again.
struct Suppressed {
  std::set<std::string, std::less<>> documentos;   ///< registrations that count as valid
  std::set<std::string, std::less<>> declaracoes;  ///< dotted IE and reference that count as new
};

/// Runs the component on the records of `text`, as the two passes over the whole file read them, and of
/// `blocks`, as the run over the records does; they differ in line ends only. Questions are answered Yes.
/// `host` serves reference tables, check digits and held declarations. Raises its run-time errors; those that
/// a record's content raises (6, 13, 62) are in the result.
[[nodiscard]] TrialResult RunTrial(std::string_view text, std::string_view blocks, const Host& host,
                                   const Suppressed& suppressed);

}  // namespace tremvik
