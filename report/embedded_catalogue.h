#pragma once

#include <string_view>

namespace tremvik::report {

/// data/regras.csv as it stands.
[[nodiscard]] std::string_view EmbeddedCatalogue();

}  // namespace tremvik::report
