// Check digits of the two registration numbers, IE (12 digits) and CNPJ (14 digits).
#pragma once

#include <string>
#include <string_view>

#include "host/components.h"

namespace tremvik {

/// The ninth digit of an IE, from its first eight digits. Further characters of `ie` are not read.
[[nodiscard]] char DigitoIE9(std::string_view ie);
/// The twelfth digit of an IE, from its first eleven digits, the ninth included.
[[nodiscard]] char DigitoIE12(std::string_view ie);
/// The whole IE of an eight-digit number and a two-digit order: both check digits put in.
[[nodiscard]] std::string CompletarIE(std::string_view numero, std::string_view ordem);
/// The whole CNPJ of its first twelve digits: the two check digits added.
[[nodiscard]] std::string CompletarCNPJ(std::string_view doze);

/// Valid is a text of exactly 12 (IE) or 14 (CNPJ) digits with the right check digits.
class ValidadorDocumentosLocal final : public ValidadorDocumentos {
 public:
  bool ValidarIE(std::string_view ie) override;
  bool ValidarCNPJ(std::string_view cnpj) override;
  std::string IECerta(std::string_view ie) override;
  std::string CNPJCerto(std::string_view cnpj) override;
};

}  // namespace tremvik
