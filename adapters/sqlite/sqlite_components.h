// The host's components over the temporary database and the store.
#pragma once

#include <memory>

#include "adapters/sqlite/store.h"
#include "adapters/sqlite/temporary_database.h"
#include "host/components.h"

namespace tremvik {

/// Makes components that keep what they are given. `temporario` and `banco` must outlive them.
class SqliteComponents final : public ComponentFactory {
 public:
  SqliteComponents(TemporaryDatabase& temporario, Store& banco) : temporario_(temporario), banco_(banco) {}

  std::unique_ptr<BancoTemporario> CriarBancoTemporario() override;
  std::unique_ptr<ConsultaDeclaracoes> CriarConsultaDeclaracoes() override;
  std::unique_ptr<ValidadorDocumentos> CriarValidadorDocumentos() override;
  std::unique_ptr<Gravador> CriarGravador(Gravavel registro) override;

 private:
  TemporaryDatabase& temporario_;
  Store& banco_;
};

/// Makes components that drop every record; the temporary database is an empty file. The store still answers
/// what it holds.
class DiscardingComponents final : public ComponentFactory {
 public:
  /// `folder` and `banco` must outlive them.
  DiscardingComponents(const ComponentFolder& folder, Store& banco) : folder_(folder), banco_(banco) {}

  std::unique_ptr<BancoTemporario> CriarBancoTemporario() override;
  std::unique_ptr<ConsultaDeclaracoes> CriarConsultaDeclaracoes() override;
  std::unique_ptr<ValidadorDocumentos> CriarValidadorDocumentos() override;
  std::unique_ptr<Gravador> CriarGravador(Gravavel registro) override;

 private:
  const ComponentFolder& folder_;
  Store& banco_;
};

}  // namespace tremvik
