#pragma once

#include <string>

#include "sample/draw.h"

namespace tremvik::sample {

/// A state registration of 12 digits with right check digits that begins with `first`.
[[nodiscard]] std::string DrawIE(Draw& draw, char first);
/// One that any taxpayer but those registered under "8" may have.
[[nodiscard]] std::string DrawIE(Draw& draw);
/// A CNPJ of 14 digits with right check digits.
[[nodiscard]] std::string DrawCNPJ(Draw& draw);
/// A valid accumulated-credit authorization code of `valor` cents under `subitem` ("00220") for the taxpayer
/// `ie`; its last five characters are drawn.
[[nodiscard]] std::string DrawAutorizacao(Draw& draw, std::string_view subitem, std::int64_t valor,
                                          std::string_view ie);

}  // namespace tremvik::sample
