#pragma once

#include <string_view>

namespace tremvik::sample {

/// data/exemplos.csv as it stands.
[[nodiscard]] std::string_view EmbeddedExamples();

}  // namespace tremvik::sample
