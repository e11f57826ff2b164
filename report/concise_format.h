#pragma once

#include <string>

#include "report/format.h"

namespace tremvik::report {

/// One line for each finding, "arquivo:linha:coluna: CR10-07 mensagem", as editors and build tools take it. A
/// finding without a line or column stands at 1. Lines that were not examined, findings that are gone since
/// the baseline, a limit that was reached and files that could not be examined have a line each, with a word
/// in the place of the rule.
class ConciseFormat final : public Format {
 public:
  [[nodiscard]] std::string Begin(const Heading& heading) override;
  [[nodiscard]] std::string File(const FileReport& file) override;
  [[nodiscard]] std::string End(const Summary& summary) override;
};

}  // namespace tremvik::report
