// Reasons in figures: what a rule compared, in the words of the user. Each is composed when its rule refuses,
// and only then. Texts are UTF-8; what stands in the file is given as it stands there.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "checks/period.h"

namespace tremvik::razao {

/// An amount in cents of any size: "1.234,56".
[[nodiscard]] std::string Reais(double centavos);
/// A date AAAAMMDD as "20/01/2012", a period AAAAMM as "01/2012".
[[nodiscard]] std::string Dia(std::string_view data);
[[nodiscard]] std::string Mes(std::string_view ref);
/// The months of a range AAAAMM: "até 12/2002", "a partir de 01/2003", "de 01/2001 a 12/2002".
[[nodiscard]] std::string Meses(Range periodo);

/// What is added up and what should equal it: "soma dos CR=25: 1.234,56; Valor: 1.234,50; diferença 0,06".
[[nodiscard]] std::string Soma(std::string_view parcelas, double soma, double valor);
/// A quarter of a base and the tax above it: "25% de 1.000,00: 250,00; Imposto: 300,00; diferença 50,00".
[[nodiscard]] std::string Quarto(double base, double imposto);
/// When `que` holds, and the declaration's period AAAAMM: "CFOP 5.602: até 12/2002; Ref: 05/2012".
[[nodiscard]] std::string Validade(std::string_view que, Range periodo, int ref);
/// The dates of a window AAAAMMDD: "permitido: de 01/01/2012 a 31/03/2012".
[[nodiscard]] std::string Dias(Range janela);
/// The key before and the one that should lie behind it: "anterior: 510200; este: 110200". Empty where there
/// is none before.
[[nodiscard]] std::string Ordem(std::string_view anterior, std::string_view este);
/// Records announced, and those read before the file ended: "informados: 3; lidos: 2".
[[nodiscard]] std::string Lidos(int informados, int lidos);
/// What is at most so many: "pagamentos: 6; o máximo é 5".
[[nodiscard]] std::string Maximo(std::string_view que, int quantos, int maximo);
/// The registration with its right check digits: "com dígitos verificadores certos: 110.042.490.114". Empty
/// where the host does not know them (`certo` empty).
[[nodiscard]] std::string Digitos(std::string_view mascara, std::string_view certo);
/// The codes of which one was wanted: "aceitos: 1401 a 1449, 1360".
[[nodiscard]] std::string Aceitos(std::span<const Range> codigos);
/// The beginning of the credit code that the value, the sub-item and the IE ask for, empty for a sub-item
/// that has no code.
[[nodiscard]] std::string CodigoCerto(std::string_view inicio, std::string_view codigo);

}  // namespace tremvik::razao
