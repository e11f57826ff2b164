// The file of accepted declarations: asked by the run, filled after it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "adapters/sqlite/connection.h"

namespace tremvik {

class Store {
 public:
  explicit Store(std::string file) : file_(std::move(file)) {}

  /// True when it holds a declaration of `ie` (dotted) for `referencia` ("AAAA-MM").
  [[nodiscard]] bool Guarda(std::string_view ie, std::string_view referencia);
  /// Moves all records of the ended temporary database `temporario` into the store, in one transaction.
  void Receber(const std::string& temporario, std::string_view nome_do_arquivo);
  /// The open store for reading; null where there is none yet.
  [[nodiscard]] sqlite::Connection* Abrir();

 private:
  [[nodiscard]] bool AbrirExistente();
  void CriarEsquema();
  void Transferir(std::string_view nome_do_arquivo);

  std::string file_;
  sqlite::Connection connection_;
  std::optional<sqlite::Statement> pergunta_;
  bool sem_banco_ = false;  // looked for and not found: the run is the one to make it
};

}  // namespace tremvik
