#include "sample/registrations.h"

#include <cstdint>
#include <stdexcept>

#include "adapters/local/documents.h"
#include "checks/credit_code.h"

namespace tremvik::sample {
std::string DrawIE(Draw& draw, char first) {
  const std::string number = first + draw.Digits(7);
  return CompletarIE(number, draw.Digits(2));
}

std::string DrawIE(Draw& draw) {
  const int first = draw.Between(1, 7);
  return DrawIE(draw, static_cast<char>('0' + first));
}

std::string DrawCNPJ(Draw& draw) { return CompletarCNPJ(draw.Digits(8) + "0001"); }

std::string DrawAutorizacao(Draw& draw, std::string_view subitem, std::int64_t valor, std::string_view ie) {
  std::string codigo = InicioDoCodigo(std::to_string(valor), subitem, ie);
  if (codigo.empty()) throw std::logic_error("sub-item without accumulated credit");
  while (codigo.size() < 12)
    codigo += kBase36[draw.Between<std::size_t>(0, kBase36.size() - 1)];
  return codigo;
}

}  // namespace tremvik::sample
