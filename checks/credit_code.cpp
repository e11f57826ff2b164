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

constexpr std::string_view kAlfabeto = "0123456789abcdefghijklmnopqrstuvwxyz";

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
std::array<char, 3> Base36(double number) {
  auto rest = static_cast<std::uint64_t>(std::abs(number));
  std::array<char, 3> digits{};
  for (char& digit : digits) {
    digit = kAlfabeto[static_cast<std::size_t>(rest % kAlfabeto.size())];
    rest /= kAlfabeto.size();
  }
  return digits;
}

bool Coincide(std::string_view trecho, const std::array<char, 3>& digits) {
  return trecho == std::string_view(digits.data(), digits.size());
}

}  // namespace

bool CodCredAcumuladoRejeitado(std::string_view codigo, std::string_view valor, std::string_view sub_item,
                               std::string_view ie) {
  const auto* const letra = std::ranges::find(kLetras, Right(sub_item, 3), &LetraDoSubItem::fim);
  if (letra == kLetras.end()) return true;
  if (!Coincide(Mid(codigo, 1, 3), Base36(std::floor(Val(valor) / 100)))) return true;
  if (!Mid(codigo, 4, 1).starts_with(letra->letra)) return true;
  if (!Coincide(Mid(codigo, 5, 3), Base36(Val(Left(ie, 9))))) return true;
  const std::string_view resto = Mid(codigo, 8, 5);
  return resto.size() != 5 || resto.find_first_not_of(kAlfabeto) != std::string_view::npos;
}

}  // namespace tremvik
