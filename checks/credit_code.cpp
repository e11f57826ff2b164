#include "checks/credit_code.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "runtime/numbers.h"
#include "runtime/text.h"

namespace tremvik {
namespace {

struct LetraDoSubItem {
  std::string_view fim;  // the sub-item's last three characters
  char letra;
};
constexpr std::array kLetras{
    LetraDoSubItem{"220", 'd'}, LetraDoSubItem{"221", 'a'}, LetraDoSubItem{"740", 't'},
    LetraDoSubItem{"741", 'r'}, LetraDoSubItem{"223", 'v'}, LetraDoSubItem{"744", 'c'},
    LetraDoSubItem{"745", 'i'},
};

// The number's three lowest base-36 digits, the least significant first.
std::string TresDigitos(double number) {
  auto rest = static_cast<std::uint64_t>(std::abs(number));
  std::string digits;
  for (int i = 0; i < 3; ++i, rest /= kBase36.size())
    digits += kBase36[static_cast<std::size_t>(rest % kBase36.size())];
  return digits;
}

}  // namespace

std::string InicioDoCodigo(std::string_view valor, std::string_view sub_item, std::string_view ie) {
  const auto letra = std::ranges::find(kLetras, Right(sub_item, 3), &LetraDoSubItem::fim);
  if (letra == kLetras.end()) return {};
  return TresDigitos(std::floor(Val(valor) / 100)) + letra->letra + TresDigitos(Val(Left(ie, 9)));
}

bool CodCredAcumuladoRejeitado(std::string_view codigo, std::string_view valor, std::string_view sub_item,
                               std::string_view ie) {
  const std::string inicio = InicioDoCodigo(valor, sub_item, ie);
  if (inicio.empty() || Left(codigo, inicio.size()) != inicio) return true;
  const std::string_view resto = Mid(codigo, 8, 5);
  return resto.size() != 5 || resto.find_first_not_of(kBase36) != std::string_view::npos;
}

}  // namespace tremvik
