// A fault shown in its place: the line, a column ruler, the field marked and named.
#pragma once

#include <string>
#include <string_view>

#include "host/diagnostics.h"
#include "text/style.h"

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

/// The place in words, the rule and its reason, the line of the file at `path` under a column ruler with the
/// field marked, and a note where `message` names another column than the true one. Ends in a line end.
[[nodiscard]] std::string RenderFault(const Fault& fault, const std::string& path, std::string_view message,
                                      const text::Look& look);

/// The characters beyond the right end of a line that is too long, at most a thousand; empty for other
/// faults.
[[nodiscard]] std::string Surplus(const Fault& fault, const std::string& path);

}  // namespace tremvik::cli
