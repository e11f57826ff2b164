// Occurrences (CR=20) of a sample declaration with their details (CR=25 to CR=28).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "sample/draw.h"

namespace tremvik::sample {

/// The detail records under an occurrence.
enum class Detalhamento : std::uint8_t { kNenhum, kIE, kSubstituto, kSubstituido, kAutorizacao };

/// One detail record; what its kind does not have stays empty.
struct DetalheOcorrencia {
  std::string chave{};  ///< IE, or authorization code
  std::int64_t nf = 0;
  int inicio = 0;  ///< AAAAMM
  int fim = 0;     ///< AAAAMM
  std::int64_t valor = 0;
};

/// One occurrence; values in cents.
struct Ocorrencia {
  std::string_view subitem;  ///< the five digits of the field
  char propria_ou_st = '0';
  std::int64_t valor = 0;
  Detalhamento detalhamento = Detalhamento::kNenhum;
  std::vector<DetalheOcorrencia> detalhes{};  ///< ascending, their values sum up to `valor`
};

/// What the occurrences depend on.
struct Context {
  int ref;
  int regime;
  std::string_view ie;
  bool complete;  ///< with every kind of detail record (needs a regime of 1 to 3, a reference from 201201 on)
};

/// Occurrences that such a declaration may hold, in the file's order. Those that begin or end with the
/// reference come first of all.
[[nodiscard]] std::vector<Ocorrencia> DrawOcorrencias(Draw& draw, const Context& context);
/// Appends the record and those under it to `out`.
void Write(const Ocorrencia& ocorrencia, Draw& draw, std::string& out);

}  // namespace tremvik::sample
