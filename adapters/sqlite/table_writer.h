#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "adapters/sqlite/store_schema.h"
#include "adapters/sqlite/temporary_database.h"
#include "host/components.h"

namespace tremvik {

/// Writes the records of one kind into the temporary database. After the first record it allocates nothing.
class TableWriter final : public Gravador {
 public:
  /// `temporario` must outlive this object.
  TableWriter(TemporaryDatabase& temporario, Kind registro);

  void CaminhoBase(std::string_view /*caminho*/) override {}
  /// A field that the record kind has not, or one given twice, raises 5.
  void Campo(std::string_view nome, std::string_view texto) override;
  /// Stores the record; a field that was not given is Null.
  void Gravar() override;

 private:
  // Where the text of a column lies in `textos_`.
  struct Lugar {
    std::size_t inicio = 0;
    std::size_t tamanho = 0;
    bool dado = false;
  };
  void Vincular(sqlite::Statement& insercao, int parametro, Forma forma, std::string_view texto);
  void VincularCampos(sqlite::Statement& insercao);
  void Limpar();

  TemporaryDatabase& temporario_;
  const TabelaDeRegistro& tabela_;
  std::string textos_;
  std::vector<Lugar> lugares_;
  std::string formados_;  // texts in the column's form, where it differs from the field's
  std::size_t proxima_ = 0;
};

}  // namespace tremvik
