// A fault shown in its place: the line, a column ruler, the field marked and named.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "host/diagnostics.h"

namespace tremvik::cli {

/// A fault's rule and place that outlive the call that told it.
struct Fault {
  explicit Fault(const FaultLocation& where)
      : linha(where.linha),
        registro(where.registro),
        campo(where.campo),
        posicao(where.posicao),
        largura(where.largura),
        valor(where.valor),
        regra(where.regra),
        porque(where.porque) {}

  /// True when it is the line's length that is wrong; the columns are those missing or too many.
  [[nodiscard]] bool MarksLength() const { return campo == "Tamanho"; }

  int linha;
  std::string registro;
  std::string campo;
  int posicao;
  int largura;
  std::string valor;  ///< Windows-1252
  std::string regra;
  std::string porque;
};

/// What the report is written on.
struct ReportLook {
  bool colour = false;
  std::size_t width = 100;  ///< cells available
};

/// The place in words, the rule and its reason, the line of the file at `path` under a column ruler with the
/// field marked, and a note where `message` names another column than the true one. Ends in a line end.
[[nodiscard]] std::string RenderFault(const Fault& fault, const std::string& path, std::string_view message,
                                      const ReportLook& look);

/// The characters beyond the right end of a line that is too long, at most a thousand; empty for other
/// faults.
[[nodiscard]] std::string Surplus(const Fault& fault, const std::string& path);

/// The columns that a message names after "Posição" ("Posição 1 ou 144" gives 1 and 144).
[[nodiscard]] std::vector<int> NamedColumns(std::string_view message);

}  // namespace tremvik::cli
