#include "sample/registrations.h"

#include <cstdint>
#include <stdexcept>

#include "adapters/local/documents.h"
#include "checks/credit_code.h"

namespace tremvik::sample {
std::string SortearIE(Sorteio& sorteio, char primeiro) {
  const std::string numero = primeiro + sorteio.Digitos(7);
  return CompletarIE(numero, sorteio.Digitos(2));
}

std::string SortearIE(Sorteio& sorteio) {
  const int primeiro = sorteio.Entre(1, 7);
  return SortearIE(sorteio, static_cast<char>('0' + primeiro));
}

std::string SortearCNPJ(Sorteio& sorteio) { return CompletarCNPJ(sorteio.Digitos(8) + "0001"); }

std::string SortearAutorizacao(Sorteio& sorteio, std::string_view subitem, std::int64_t valor,
                               std::string_view ie) {
  std::string codigo = InicioDoCodigo(std::to_string(valor), subitem, ie);
  if (codigo.empty()) throw std::logic_error("sub-item without accumulated credit");
  while (codigo.size() < 12)
    codigo += kBase36[sorteio.Entre<std::size_t>(0, kBase36.size() - 1)];
  return codigo;
}

}  // namespace tremvik::sample
