// The store of accepted declarations, as those read it who list what it holds. Its tables: docs/store.md.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "host/components.h"

namespace tremvik {

namespace arquivo {
inline constexpr std::string_view kDeclaracoes = "tremvik.db";
}

/// One declaration that the store holds.
struct DeclaracaoGuardada {
  std::string ie;                                    ///< "110.042.490.114"
  std::string cnpj;                                  ///< "12.345.678/0001-95"
  std::string regime;                                ///< "01"
  std::string referencia;                            ///< "AAAA-MM"
  std::string referencia_inicial;                    ///< "AAAA-MM", empty where it has none
  std::string importado_em;                          ///< UTC, "2012-03-20T12:34:56Z"
  std::string arquivo;                               ///< name of the file that it came from
  std::array<int, kStoredKinds.size()> registros{};  ///< records per kind, in the order of `kStoredKinds`
};

/// A value of a stored record: nothing, a whole number (cents, quantities, line numbers) or a text (UTF-8).
using Celula = std::variant<std::monostate, std::int64_t, std::string>;

/// The records of one kind of one declaration.
struct TabelaGuardada {
  Kind registro;
  std::string nome;                         ///< the table's name in the store
  std::vector<std::string> colunas;         ///< "linha" first, then the columns of docs/store.md
  std::vector<std::vector<Celula>> linhas;  ///< one row per record, in file order, one cell per column
};

/// "110042490114" or "110.042.490.114" in dotted form; empty when `ie` is neither.
[[nodiscard]] std::string NormalizarIE(std::string_view ie);
/// "AAAAMM", "AAAA-MM" or "MM/AAAA" as "AAAA-MM"; empty when `referencia` is none of them.
[[nodiscard]] std::string NormalizarReferencia(std::string_view referencia);

/// Reads a store. A folder without one holds no declarations. Raises 3045 when it stays locked, 3343 when the
/// file is no store or one of a newer version, file errors when it cannot be read.
class DeclarationStore {
 public:
  /// `pasta`: the component's folder.
  explicit DeclarationStore(std::string_view pasta);
  ~DeclarationStore();
  DeclarationStore(const DeclarationStore&) = delete;
  DeclarationStore& operator=(const DeclarationStore&) = delete;

  /// All declarations, by IE and reference.
  [[nodiscard]] std::vector<DeclaracaoGuardada> Listar();
  /// One declaration's records, the header's table first; tables without a record of it are left out. Empty
  /// when the store does not hold it. `ie` dotted, `referencia` "AAAA-MM".
  [[nodiscard]] std::vector<TabelaGuardada> Registros(std::string_view ie, std::string_view referencia);

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace tremvik
