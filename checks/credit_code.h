#pragma once

#include <string>
#include <string_view>

namespace tremvik {

/// What an authorization code of accumulated credit is made of: the digits of base 36.
inline constexpr std::string_view kBase36 = "0123456789abcdefghijklmnopqrstuvwxyz";

/// The first seven of the code's twelve characters: the value (cents), the occurrence's sub-item and the
/// taxpayer's IE. Empty for a sub-item without a letter of its own.
[[nodiscard]] std::string InicioDoCodigo(std::string_view valor, std::string_view sub_item,
                                         std::string_view ie);

/// True when the code is rejected: its beginning must be `InicioDoCodigo`, the rest of it digits of base 36.
/// A sub-item without a letter rejects every code.
[[nodiscard]] bool CodCredAcumuladoRejeitado(std::string_view codigo, std::string_view valor,
                                             std::string_view sub_item, std::string_view ie);

}  // namespace tremvik
