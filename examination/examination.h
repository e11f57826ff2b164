// Every fault of a file in one call, where a run of the component tells the first one and stops.
#pragma once

#include <cstddef>
#include <functional>
#include <string_view>

#include "examination/findings.h"
#include "host/host.h"

namespace tremvik {

struct ExaminationOptions {
  std::size_t limite = 100;    ///< findings after which it ends; 0 for none
  bool responder_sim = false;  ///< a question does not refuse the file: it counts as answered Yes
  bool todas = true;           ///< without it only what one run of the import tells is found
  /// Called after each declaration of a refused file with how many are done, of how many.
  std::function<void(std::size_t done, std::size_t total)> progresso = {};
};

/// Finds every fault of the file whose `bytes` are given: each as the component would tell it if the ones
/// before it were mended. It runs the component over the file and over its declarations one by one, in
/// memory; what follows only from a fault already told is held back. No message box is shown, no event
/// raised, nothing stored: of `host` only the reference tables, the check digits and the declarations already
/// held are asked.
///
/// Use it to mend a file; use `Tremvik` to import one. A file without a fault here is one that `Tremvik`
/// accepts. Raises the run-time errors of the host's own parts, such as reference tables that cannot be read.
[[nodiscard]] Examination Examinar(std::string_view bytes, const Host& host,
                                   const ExaminationOptions& options = {});

}  // namespace tremvik
