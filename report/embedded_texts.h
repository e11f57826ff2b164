#pragma once

#include <string_view>

namespace tremvik::report {

/// data/regras.csv as it stands.
[[nodiscard]] std::string_view EmbeddedCatalogue();

/// docs/relatorio.schema.json as it stands.
[[nodiscard]] std::string_view EmbeddedSchema();

/// report/html_format.css as it stands.
[[nodiscard]] std::string_view EmbeddedStyle();

}  // namespace tremvik::report
