#pragma once

#include <string>

#include "sample/draw.h"

namespace tremvik::sample {

/// A state registration of 12 digits with right check digits that begins with `primeiro`.
[[nodiscard]] std::string SortearIE(Sorteio& sorteio, char primeiro);
/// One that any taxpayer but those registered under "8" may have.
[[nodiscard]] std::string SortearIE(Sorteio& sorteio);
/// A CNPJ of 14 digits with right check digits.
[[nodiscard]] std::string SortearCNPJ(Sorteio& sorteio);
/// A valid accumulated-credit authorization code of `valor` cents under `subitem` ("00220") for the taxpayer
/// `ie`; its last five characters are drawn.
[[nodiscard]] std::string SortearAutorizacao(Sorteio& sorteio, std::string_view subitem, std::int64_t valor,
                                             std::string_view ie);

}  // namespace tremvik::sample
