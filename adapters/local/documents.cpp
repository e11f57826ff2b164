#include "adapters/local/documents.h"

#include <array>
#include <numeric>
#include <span>

#include "runtime/numbers.h"

namespace tremvik {
namespace {

constexpr std::array kPesosIE9{1, 3, 4, 5, 6, 7, 8, 10};
constexpr std::array kPesosIE12{3, 2, 10, 9, 8, 7, 6, 5, 4, 3, 2};
constexpr std::array kPesosCNPJ{6, 5, 4, 3, 2, 9, 8, 7, 6, 5, 4, 3, 2};

int Soma(std::string_view digitos, std::span<const int> pesos) {
  return std::transform_reduce(pesos.begin(), pesos.end(), digitos.begin(), 0, std::plus<>(),
                               [](int peso, char digito) { return peso * (digito - '0'); });
}

char Algarismo(int valor) { return static_cast<char>('0' + valor); }

char DigitoCNPJ(std::string_view digitos) {
  const int resto = Soma(digitos, std::span(kPesosCNPJ).last(digitos.size())) % 11;
  return Algarismo(resto < 2 ? 0 : 11 - resto);
}

}  // namespace

char DigitoIE9(std::string_view ie) { return Algarismo(Soma(ie, kPesosIE9) % 11 % 10); }

char DigitoIE12(std::string_view ie) { return Algarismo(Soma(ie, kPesosIE12) % 11 % 10); }

std::string CompletarIE(std::string_view numero, std::string_view ordem) {
  std::string ie(numero.substr(0, 8));
  ie += DigitoIE9(ie);
  ie += ordem.substr(0, 2);
  ie += DigitoIE12(ie);
  return ie;
}

std::string CompletarCNPJ(std::string_view doze) {
  std::string cnpj(doze.substr(0, 12));
  cnpj += DigitoCNPJ(cnpj);
  cnpj += DigitoCNPJ(cnpj);
  return cnpj;
}

bool ValidadorDocumentosLocal::ValidarIE(std::string_view ie) {
  return ie.size() == 12 && OnlyDigits(ie) && ie[8] == DigitoIE9(ie) && ie[11] == DigitoIE12(ie);
}

bool ValidadorDocumentosLocal::ValidarCNPJ(std::string_view cnpj) {
  return cnpj.size() == 14 && OnlyDigits(cnpj) && cnpj[12] == DigitoCNPJ(cnpj.substr(0, 12)) &&
         cnpj[13] == DigitoCNPJ(cnpj.substr(0, 13));
}

std::string ValidadorDocumentosLocal::IECerta(std::string_view ie) {
  if (ie.size() != 12 || !OnlyDigits(ie)) return {};
  return CompletarIE(ie.substr(0, 8), ie.substr(9, 2));
}

std::string ValidadorDocumentosLocal::CNPJCerto(std::string_view cnpj) {
  return cnpj.size() == 14 && OnlyDigits(cnpj) ? CompletarCNPJ(cnpj.substr(0, 12)) : std::string();
}

}  // namespace tremvik
