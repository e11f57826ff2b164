#pragma once

#include <string>

#include "report/format.h"

namespace tremvik::report {

/// JUnit's XML: a suite a file, a case a declaration. Faults before the first declaration, and those of the
/// file as a whole, are a case of their own, as is a file without a declaration.
class JunitFormat final : public Format {
 public:
  [[nodiscard]] std::string Begin(const Heading& heading) override;
  [[nodiscard]] std::string File(const FileReport& file) override;
  [[nodiscard]] std::string End(const Summary& summary) override;
};

}  // namespace tremvik::report
