#include "checks/dates.h"

#include <array>
#include <chrono>

#include "runtime/int16.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace tremvik {
namespace {

int DiasDoMes(int mes, int ano) {
  constexpr std::array kDias{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool bissexto = ano % 4 == 0;
  return mes == 2 && bissexto ? 29 : kDias.at(static_cast<std::size_t>(mes - 1));
}

}  // namespace

bool ValidarData(std::string_view text) {
  const std::string_view ano = Left(text, 4);
  const std::string_view mes = Mid(text, 5, 2);
  const std::string_view dia = Right(text, 2);
  if (!IsNumeric(ano) || ToNumber(ano) <= 0) return true;
  if (!IsNumeric(mes) || ToNumber(mes) < 1 || ToNumber(mes) > 12) return true;
  if (!IsNumeric(dia)) return true;
  const double numero = ToNumber(dia);
  if (text.size() > 6 && numero <= 0) return true;
  const int dias = DiasDoMes(static_cast<int>(ToNumber(mes)), static_cast<int>(ToNumber(ano)));
  return numero < 1 || numero > dias;
}

bool ValidarHora(std::string_view text) {
  const std::string_view horas = Left(text, 2);
  const std::string_view minutos = Mid(text, 3, 2);
  const std::string_view segundos = Right(text, 2);
  if (!IsNumeric(horas) || !IsNumeric(minutos) || !IsNumeric(segundos)) return true;
  const int h = ToByte(ToNumber(horas));
  const int m = ToByte(ToNumber(minutos));
  const int s = ToByte(ToNumber(segundos));
  return h > 24 || m > 59 || s > 59;
}

int UltimoDia(int ano, int mes) {
  const auto dia =
      (std::chrono::year(ano) / std::chrono::month(static_cast<unsigned>(mes)) / std::chrono::last).day();
  return static_cast<int>(static_cast<unsigned>(dia));
}

}  // namespace tremvik
