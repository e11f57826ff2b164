#pragma once

#include <string>
#include <string_view>

namespace tremvik::report {

/// The SHA-256 of `bytes` (FIPS 180-4) as 64 hexadecimal digits in lower case.
[[nodiscard]] std::string Sha256(std::string_view bytes);

}  // namespace tremvik::report
