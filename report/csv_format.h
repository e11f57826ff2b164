#pragma once

#include <string>

#include "report/format.h"

namespace tremvik::report {

/// A table for spreadsheets: semicolons, a byte-order mark, CR LF, a row a finding; a file without findings
/// has a row of its own.
class CsvFormat final : public Format {
 public:
  [[nodiscard]] std::string Begin(const Heading& heading) override;
  [[nodiscard]] std::string File(const FileReport& file) override;
  [[nodiscard]] std::string End(const Summary& summary) override;
};

}  // namespace tremvik::report
