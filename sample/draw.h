// The draw behind a sample file: the same seed gives the same numbers with every compiler and library, which
// the standard distributions do not promise. Draw once per statement or initializer: the order in which
// operands and arguments are evaluated is the compiler's.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace tremvik::sample {

class Sorteio {
 public:
  explicit Sorteio(std::uint64_t semente) : estado_(semente) {}

  /// The next 64 bits (SplitMix64).
  std::uint64_t Bits() {
    std::uint64_t z = (estado_ += 0x9E3779B97F4A7C15U);
    z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9U;
    z = (z ^ (z >> 27U)) * 0x94D049BB133111EBU;
    return z ^ (z >> 31U);
  }
  /// A number from `menor` to `maior`, both included.
  template <typename T>
  T Entre(T menor, T maior) {
    const auto faixa = static_cast<std::uint64_t>(maior - menor) + 1;
    return static_cast<T>(menor + static_cast<T>(Bits() % faixa));
  }
  /// True in `porcento` of a hundred draws.
  bool Chance(int porcento) { return Entre(0, 99) < porcento; }
  /// `quantidade` decimal digits.
  std::string Digitos(std::size_t quantidade) {
    std::string digitos;
    for (std::size_t i = 0; i < quantidade; ++i)
      digitos += static_cast<char>('0' + Entre(0, 9));
    return digitos;
  }
  template <typename T, std::size_t N>
  const T& Um(const std::array<T, N>& opcoes) {
    return opcoes[Entre<std::size_t>(0, N - 1)];
  }
  template <typename T>
  void Embaralhar(std::vector<T>& itens) {
    for (std::size_t i = itens.size(); i > 1; --i)
      std::swap(itens[i - 1], itens[Entre<std::size_t>(0, i - 1)]);
  }

 private:
  std::uint64_t estado_;
};

}  // namespace tremvik::sample
