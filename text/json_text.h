#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace tremvik::text {

/// A JSON value in one line. What is no UTF-8 becomes U+FFFD; characters that could drive a terminal or are
/// not seen are escaped, so that the meaning stays.
[[nodiscard]] std::string JsonText(const nlohmann::ordered_json& value);

}  // namespace tremvik::text
