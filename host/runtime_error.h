// Run-time errors of the desktop runtime, as hosts and users know them: a number and a description.
#pragma once

#include <exception>
#include <string>
#include <string_view>

namespace tremvik {

/// A run-time error. Raised by the core's conversions and by every host operation that fails; caught only by
/// the import run and the length pass. Refusals of a file's content are never run-time errors.
class RuntimeError : public std::exception {
 public:
  /// An error of the runtime's table, with the table's description.
  explicit RuntimeError(int number);
  /// An error with a description of its own (an engine's or a component's own words, UTF-8).
  RuntimeError(int number, std::string_view description);

  [[nodiscard]] int number() const { return number_; }
  [[nodiscard]] const std::string& description() const { return description_; }
  [[nodiscard]] const char* what() const noexcept override { return description_.c_str(); }

 private:
  int number_;
  std::string description_;
};

/// The numbers that the core and the hosts raise.
namespace erro {
inline constexpr int kArgumentoInvalido = 5;
inline constexpr int kEstouro = 6;
inline constexpr int kMemoriaInsuficiente = 7;
inline constexpr int kTiposIncompativeis = 13;
inline constexpr int kNumeroDeArquivoInvalido = 52;
inline constexpr int kArquivoNaoEncontrado = 53;
inline constexpr int kArquivoJaAberto = 55;
inline constexpr int kEntradaSaida = 57;
inline constexpr int kArquivoJaExiste = 58;
inline constexpr int kDiscoCheio = 61;
inline constexpr int kFimDoArquivo = 62;
inline constexpr int kExcessoDeArquivos = 67;
inline constexpr int kPermissaoNegada = 70;
inline constexpr int kAcessoAoCaminho = 75;
inline constexpr int kCaminhoNaoEncontrado = 76;
inline constexpr int kComponenteNaoCriado = 429;
inline constexpr int kBancoNaoEncontrado = 3024;
inline constexpr int kBancoEmUso = 3045;
inline constexpr int kParametrosInsuficientes = 3061;
inline constexpr int kSintaxeDaConsulta = 3075;
inline constexpr int kTabelaNaoEncontrada = 3078;
inline constexpr int kFormatoDesconhecido = 3343;
}  // namespace erro

/// Turns the exception being handled into a run-time error: a RuntimeError as it is, exhausted memory as
/// error 7, anything else (a defect of a host) as error 5. Call it inside a catch block only.
[[nodiscard]] RuntimeError CurrentRuntimeError();

}  // namespace tremvik
