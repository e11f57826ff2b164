#include "checks/reasons.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "runtime/display.h"
#include "runtime/text.h"

namespace tremvik::razao {
namespace {

// A number AAAAMM or AAAAMMDD in its whole width.
std::string Padded(int number, std::size_t width) {
  std::string digits = std::to_string(number);
  return digits.insert(0, width - std::min(width, digits.size()), '0');
}

std::string Mes(int ref) { return razao::Mes(Padded(ref, 6)); }

}  // namespace

std::string Reais(double centavos) {
  std::string text(SemZeros(std::abs(centavos)));
  text.insert(0, 3 - std::min<std::size_t>(3, text.size()), '0');
  std::size_t point = text.size() - 2;
  text.insert(point, 1, ',');
  for (; point > 3; point -= 3)
    text.insert(point - 3, 1, '.');
  return text;
}

std::string Dia(std::string_view data) { return Utf8(Right(data, 2)).append("/").append(Mes(Left(data, 6))); }

std::string Mes(std::string_view ref) { return Utf8(Right(ref, 2)).append("/").append(Utf8(Left(ref, 4))); }

std::string Meses(Range periodo) {
  if (periodo.last == kSemFim) return "a partir de " + Mes(periodo.first);
  if (periodo.first == 0) return "até " + Mes(periodo.last);
  return "de " + Mes(periodo.first) + " a " + Mes(periodo.last);
}

std::string Soma(std::string_view parcelas, double soma, double valor) {
  return std::string("soma dos ").append(parcelas) + ": " + Reais(soma) + "; Valor: " + Reais(valor) +
         "; diferença " + Reais(soma - valor);
}

std::string Quarto(double base, double imposto) {
  const double limite = std::round(base / 4);
  return "25% de " + Reais(base) + ": " + Reais(limite) + "; Imposto: " + Reais(imposto) + "; diferença " +
         Reais(imposto - limite);
}

std::string Validade(std::string_view que, Range periodo, int ref) {
  constexpr int kPrimeira = 100001;  // below it the period itself is malformed
  std::string texto = std::string(que).append(": ") + Meses(periodo);
  return ref < kPrimeira ? texto : texto + "; Ref: " + Mes(ref);
}

std::string Dias(Range janela) {
  return "permitido: de " + Dia(Padded(janela.first, 8)) + " a " + Dia(Padded(janela.last, 8));
}

std::string Ordem(std::string_view anterior, std::string_view este) {
  if (anterior.empty()) return {};
  return std::string("anterior: ").append(anterior).append("; este: ").append(este);
}

std::string Lidos(int informados, int lidos) {
  return "informados: " + std::to_string(informados) + "; lidos: " + std::to_string(lidos);
}

std::string Maximo(std::string_view que, int quantos, int maximo) {
  return std::string(que).append(": ") + std::to_string(quantos) + "; o máximo é " + std::to_string(maximo);
}

std::string Digitos(std::string_view mascara, std::string_view certo) {
  if (certo.empty()) return {};
  return std::string("com dígitos verificadores certos: ").append(Mascara(mascara, certo));
}

std::string Aceitos(std::span<const Range> codigos) {
  std::string texto;
  for (const Range& faixa : codigos) {
    texto.append(texto.empty() ? "aceitos: " : ", ").append(std::to_string(faixa.first));
    if (faixa.last != faixa.first) texto.append(" a ").append(std::to_string(faixa.last));
  }
  return texto;
}

std::string CodigoCerto(std::string_view inicio, std::string_view codigo) {
  if (inicio.empty()) return {};
  const std::string informado = Utf8(Left(codigo, inicio.size()));
  std::string texto = std::string("o código certo começa com ").append(inicio);
  if (informado == inicio) return texto + "; o resto são algarismos e letras minúsculas";
  return texto + "; o informado, com " + informado;
}

}  // namespace tremvik::razao
