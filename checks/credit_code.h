#pragma once

#include <string_view>

namespace tremvik {

/// True when the authorization code of accumulated credit (12 characters) is rejected: it must agree with the
/// value in cents, the occurrence's sub-item and the taxpayer's IE, and the rest of it must be digits or
/// small letters. A sub-item without a letter of its own rejects every code.
[[nodiscard]] bool CodCredAcumuladoRejeitado(std::string_view codigo, std::string_view valor,
                                             std::string_view sub_item, std::string_view ie);

}  // namespace tremvik
