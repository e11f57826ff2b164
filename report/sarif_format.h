#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "report/format.h"

namespace tremvik::report {

/// SARIF 2.1.0: one run, the rules from the catalogue, a result a finding. What could not be examined is told
/// as notifications of the run, of which it bears the first thousand.
class SarifFormat final : public Format {
 public:
  [[nodiscard]] std::string Begin(const Heading& heading) override;
  [[nodiscard]] std::string File(const FileReport& file) override;
  [[nodiscard]] std::string End(const Summary& summary) override;

 private:
  /// Remembers `words` (at most a thousand of them) about a place of `file`.
  void Notify(std::string_view level, std::string_view words, const FileReport& file, int linha = 0);

  bool first_ = true;
  std::vector<std::string> notifications_;  ///< JSON objects
};

}  // namespace tremvik::report
