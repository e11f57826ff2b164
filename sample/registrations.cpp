#include "sample/registrations.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "adapters/local/documents.h"

namespace tremvik::sample {
namespace {

constexpr std::string_view kSimbolos = "0123456789abcdefghijklmnopqrstuvwxyz";

// Three base-36 digits, the least significant first.
std::string Base36(std::int64_t valor) {
  std::string digitos;
  for (int i = 0; i < 3; ++i, valor /= 36)
    digitos += kSimbolos[static_cast<std::size_t>(valor % 36)];
  return digitos;
}

constexpr std::array<std::pair<std::string_view, char>, 7> kLetras{
    {{"220", 'd'}, {"221", 'a'}, {"740", 't'}, {"741", 'r'}, {"223", 'v'}, {"744", 'c'}, {"745", 'i'}}};

char LetraDoSubitem(std::string_view subitem) {
  for (const auto& [final, letra] : kLetras) {
    if (subitem.ends_with(final)) return letra;
  }
  throw std::logic_error("sub-item without accumulated credit");
}

}  // namespace

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
  std::int64_t inscricao = 0;
  std::from_chars(ie.data(), ie.data() + 9, inscricao);
  std::string codigo = Base36(valor / 100) + LetraDoSubitem(subitem) + Base36(inscricao);
  while (codigo.size() < 12)
    codigo += kSimbolos[sorteio.Entre<std::size_t>(0, 35)];
  return codigo;
}

}  // namespace tremvik::sample
