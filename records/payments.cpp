#include "records/payments.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <string_view>

#include "checks/dates.h"
#include "checks/period.h"
#include "checks/reasons.h"
#include "records/without_fields.h"
#include "runtime/display.h"
#include "runtime/int16.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace tremvik {
namespace {

using C = Cr07;

constexpr int kMaximoDePagamentos = 5;  // of each kind in a declaration

// From the first day of the reference month to the last day of the second month after it, as numbers
// AAAAMMDD.
Range PeriodoDePagamento(std::string_view ref) {
  const int ano = IntVal(Left(ref, 4));
  const int mes = IntVal(Right(ref, 2));
  const int ultimo_mes = (mes + 1) % 12 + 1;
  const int ultimo_ano = ano + (mes + 1) / 12;
  return {ano * 10000 + mes * 100 + 1,
          ultimo_ano * 10000 + ultimo_mes * 100 + UltimoDia(ultimo_ano, ultimo_mes)};
}

Verdict ValidarCamposCR07(const Record<Cr07>& r, std::string_view ref) {
  if (LefRigNumChr(r[C::kCr])) {
    return Refuse("CR07-04", r, C::kCr, "Tabela 20, CR=07, Campo - CR ", "Inconsistentes, Posição 1");
  }
  if (Val(r[C::kCr]) != 7) {
    return Refuse("CR07-05", r, C::kCr, "Tabela 20, CR=07, Campo - CR ou Q07",
                  "Inconsistentes, Posição 1 ou 126");
  }
  if (LefRigNumChr(r[C::kPropriaOuST]) || (Val(r[C::kPropriaOuST]) != 0 && Val(r[C::kPropriaOuST]) != 1)) {
    return Refuse("CR07-06", r, C::kPropriaOuST, "Tabela 20, CR=07, Campo - PrópriaOuST",
                  "Inconsistente, Posição 3");
  }
  if (LefRigNumChr(r[C::kValor])) {
    return Refuse("CR07-07", r, C::kValor, "Tabela 20, CR=07, Campo - Valor", "Inconsistente, Posição 4");
  }
  if (LefRigNumChr(r[C::kData]) || Val(r[C::kData]) <= 0) {
    return Refuse("CR07-08", r, C::kData, "Tabela 20, CR=07, Campo - Data", "Inconsistente, Posição 19");
  }
  if (ValidarData(r[C::kData])) {
    return Refuse("CR07-09", r, C::kData, "Tabela 20, CR=07, Campo - Data", "Inválida, Posição 19");
  }
  if (!PeriodoDePagamento(ref).Holds(IntVal(r[C::kData]))) {
    return Refuse("CR07-10", r, C::kData, "Tabela 20, CR=07, Campo - Data", "Período Inválido, Posição 19")
        .Porque(razao::Dias(PeriodoDePagamento(ref)));
  }
  if (Val(Left(ref, 4)) < 2012) {
    return Refuse("CR07-11", r, C::kData, "Tabela 20, CR=07, Campo - Data/Ref",
                  "Só é permitido preenchimento do campo pagamento para referência a partir de 01/2012")
        .Porque(razao::Validade("pagamentos", {201201, kSemFim}, IntVal(ref)));
  }
  return Accepted;
}

// The payments of a declaration seen so far: dates by kind, and how many of each kind.
class Pagamentos {
 public:
  // False when that kind already has that date.
  bool Datar(const Record<Cr07>& r) {
    const std::span vistos = std::span(vistos_).first(quantos_);
    const Chave chave = ChaveDe(r);
    if (std::ranges::find(vistos, chave) != vistos.end()) return false;
    vistos_.at(quantos_++) = chave;
    return true;
  }
  void Contar(const Record<Cr07>& r) { Increment(Val(r[C::kPropriaOuST]) == 0 ? proprias_ : st_); }

  [[nodiscard]] std::int16_t proprias() const { return proprias_; }
  [[nodiscard]] std::int16_t st() const { return st_; }

 private:
  using Chave = std::array<char, 9>;  // kind and date
  static Chave ChaveDe(const Record<Cr07>& r) {
    Chave chave{};
    std::ranges::copy(r[C::kPropriaOuST], chave.begin());
    std::ranges::copy(r[C::kData], chave.begin() + 1);
    return chave;
  }

  std::array<Chave, 2 * kMaximoDePagamentos + 1> vistos_{};  // the one too many is seen before it is counted
  std::size_t quantos_ = 0;
  std::int16_t proprias_ = 0;
  std::int16_t st_ = 0;
};

void GravarCR07(const Record<Cr07>& r, Components& componentes) {
  Gravador& gravador = componentes.gravador(Kind::kCr07);
  if (!gravador.LeCampos()) return GravarSemCampos<C>(r, std::array{C::kValor}, gravador);
  gravador.Campo(C::kPropriaOuST.name, r[C::kPropriaOuST]);
  gravador.Campo(C::kValor.name, FomataValor(r[C::kValor]));
  gravador.Campo(C::kData.name, DataComBarras(r[C::kData]));
  gravador.Gravar();
}

}  // namespace

Verdict ValidarCR07(Pass& pass) {
  Record<Cr07>& r = pass.registros.RegistroCR07;
  const Record<Cr05>& cabecalho = pass.registros.RegistroDeclaracao;
  Pagamentos pagamentos;
  for (int i = 0; i < pass.declaracao.QtdeCR07; ++i) {
    pass.arquivo.Next(r);
    if (r[C::kSeparadores] != kCrLf) {
      return Refuse("CR07-01", r, C::kSeparadores, "Tabela 20, CR=07 Campo - Separadores",
                    "inconsistente, Posição 27");
    }
    if (pass.arquivo.EndOfFile()) {
      return Refuse("CR07-02", cabecalho, Cr05::kQ07, "Tabela 2, CR=05 Campo - Q07",
                    "inconsistente, Posição 114")
          .Porque(razao::Lidos(pass.declaracao.QtdeCR07, i));
    }
    if (!pagamentos.Datar(r)) {
      return Refuse("CR07-03", r, C::kData, "Tabela 20, CR=07, Campo - Data", "Pagamentos com mesma data")
          .Porque("já informada em outro pagamento: PrópriaOuST " + Utf8(r[C::kPropriaOuST]) + ", " +
                  razao::Dia(r[C::kData]));
    }
    if (auto refused = ValidarCamposCR07(r, cabecalho[Cr05::kRef])) return refused;
    pagamentos.Contar(r);
    if (pagamentos.proprias() > kMaximoDePagamentos) {
      return Refuse("CR07-12", r, C::kPropriaOuST, "Tabela 20, CR=07 Campo - PrópriaOUST",
                    "Quantidades de detalhamento de pagamentos de operações próprias maior que 5")
          .Porque(razao::Maximo("pagamentos", pagamentos.proprias(), kMaximoDePagamentos));
    }
    if (pagamentos.st() > kMaximoDePagamentos) {
      return Refuse("CR07-13", r, C::kPropriaOuST, "Tabela 20, CR=07 Campo - PrópriaOUST",
                    "Quantidades de detalhamento de pagamentos de operações ST maior que 5")
          .Porque(razao::Maximo("pagamentos", pagamentos.st(), kMaximoDePagamentos));
    }
    GravarCR07(r, pass.componentes);
  }
  return Accepted;
}

}  // namespace tremvik
