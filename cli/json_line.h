#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace tremvik::cli {

/// One JSON object as a line. What is no UTF-8 becomes U+FFFD; characters that could drive a terminal or are
/// not seen are escaped, so that the line's meaning stays.
[[nodiscard]] std::string JsonLine(const nlohmann::ordered_json& object);

}  // namespace tremvik::cli
