// The tables of the stored records: the same columns in the temporary database and in the store.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "host/components.h"

namespace tremvik {

/// How a field's text becomes a column's value. A text that has not the form is stored as it stands.
enum class Forma : std::uint8_t {
  kTexto,    ///< as it comes
  kInteiro,  ///< digits, stored as a whole number
  kValor,    ///< "1.234,56", stored as it comes and, in a column "..._centavos" beside it, as 123456
  kData,     ///< "AAAA/MM/DD", stored as "AAAA-MM-DD"
  kMes,      ///< "20/MM/AAAA", stored as "AAAA-MM"
  kPeriodo   ///< "AAAAMM", stored as "AAAA-MM"; zeros are Null
};

/// One column, named after the record field that fills it.
struct ColunaGuardada {
  std::string_view campo;
  std::string_view nome;
  Forma forma = Forma::kTexto;
};

/// The table of one record kind. Every table but the header's has the columns "declaracao_id" and "linha" as
/// its key; a detail also has the line of the record that it belongs to.
struct TabelaDeRegistro {
  Kind registro;
  std::string_view nome;
  std::optional<Kind> pai;  ///< the kind that this one details, other than the header
  std::span<const ColunaGuardada> colunas;
};

/// The twelve tables, in the order of `kStoredKinds`.
[[nodiscard]] std::span<const TabelaDeRegistro> TabelasDeRegistros();
/// The table of a kind that is stored; another one raises 5.
[[nodiscard]] const TabelaDeRegistro& TabelaDe(Kind registro);

/// Columns before those of the fields: header "id", "linha"; others "declaracao_id", "linha" and the parent's
/// line if they have a parent.
[[nodiscard]] int ColunasDeChave(const TabelaDeRegistro& tabela);
/// The name of the column that holds the parent's line ("cfop_linha").
[[nodiscard]] std::string ColunaDoPai(const TabelaDeRegistro& tabela);

/// The statements that make the temporary database's tables; "linha" is their only key.
[[nodiscard]] std::string EsquemaTemporario();
/// The statement that writes one record: parameters are the key columns, then each field's columns.
[[nodiscard]] std::string InsercaoTemporaria(const TabelaDeRegistro& tabela);
/// The statements that make the store's tables, the store being attached as "banco".
[[nodiscard]] std::string EsquemaDoBanco();
/// The statement that moves a table's rows from the temporary database into the store, attached as "banco".
/// Parameter 1 is added to the declarations' numbers; the header's parameter 2 is the import's number.
[[nodiscard]] std::string Transferencia(const TabelaDeRegistro& tabela);

}  // namespace tremvik
