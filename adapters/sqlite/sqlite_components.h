// The host's components over the temporary database and the store.
#pragma once

#include <memory>

#include "adapters/local/temporary_names.h"
#include "adapters/sqlite/store.h"
#include "adapters/sqlite/temporary_database.h"
#include "host/components.h"

namespace tremvik {

/// Makes components that keep what they are given. `temporario` and `banco` must outlive them.
class SqliteComponents final : public ComponentFactory {
 public:
  SqliteComponents(TemporaryDatabase& temporario, Store& banco) : temporary_(temporario), banco_(banco) {}

  std::unique_ptr<BancoTemporario> CriarBancoTemporario() override;
  std::unique_ptr<ConsultaDeclaracoes> CriarConsultaDeclaracoes() override;
  std::unique_ptr<ValidadorDocumentos> CriarValidadorDocumentos() override;
  std::unique_ptr<Gravador> CriarGravador(Kind registro) override;

 private:
  TemporaryDatabase& temporary_;
  Store& banco_;
};

/// Makes components that drop every record; the temporary database is but a name. The store still answers
/// what it holds.
class DiscardingComponents final : public ComponentFactory {
 public:
  /// `nomes` and `banco` must outlive them.
  DiscardingComponents(TemporaryNames& nomes, Store& banco) : nomes_(nomes), banco_(banco) {}

  std::unique_ptr<BancoTemporario> CriarBancoTemporario() override;
  std::unique_ptr<ConsultaDeclaracoes> CriarConsultaDeclaracoes() override;
  std::unique_ptr<ValidadorDocumentos> CriarValidadorDocumentos() override;
  std::unique_ptr<Gravador> CriarGravador(Kind registro) override;

 private:
  TemporaryNames& nomes_;
  Store& banco_;
};

}  // namespace tremvik
