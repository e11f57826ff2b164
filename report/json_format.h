#pragma once

#include <string>

#include "report/format.h"

namespace tremvik::report {

/// One JSON document, as `JsonSchema` describes it; each file is a line of its text.
class JsonFormat final : public Format {
 public:
  [[nodiscard]] std::string Begin(const Heading& heading) override;
  [[nodiscard]] std::string File(const FileReport& file) override;
  [[nodiscard]] std::string End(const Summary& summary) override;

 private:
  bool first_ = true;
};

/// The JSON Schema of the document, docs/relatorio.schema.json as it stands.
[[nodiscard]] std::string_view JsonSchema();

}  // namespace tremvik::report
