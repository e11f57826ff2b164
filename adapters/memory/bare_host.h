#pragma once

#include "adapters/memory/memory_engine.h"
#include "host/host.h"

namespace tremvik {

/// A host that has nothing but the reference tables that are part of the program and the check digits: for
/// examinations, which bring the file themselves. It shows and keeps nothing, has no file and holds no
/// declaration; questions are answered No.
class BareHost final : Screen, Events, Diagnostics, Files, Application, ComponentFactory {
 public:
  /// The component's view of it; valid as long as this object.
  [[nodiscard]] Host host() { return {*this, *this, *this, *this, *this, engine_, *this}; }

 private:
  int MsgBox(std::string_view text, int style, std::string_view title) override;
  void SetPointer(int /*pointer*/) override {}
  void Progresso() override {}
  void Fechar() override {}
  void Inconsistencia(const FaultLocation& /*where*/) override {}
  void Duvida(const FaultLocation& /*where*/) override {}

  bool Exists(std::string_view path) override;
  void Delete(std::string_view path) override;
  void Rename(std::string_view from, std::string_view to) override;
  int FreeFile() override { return 1; }
  void Open(int number, std::string_view path) override;
  std::size_t Read(int number, char* buffer, std::size_t count) override;
  void Close(int /*number*/) override {}

  std::string AppPath() override { return {}; }
  std::string GetSetting(std::string_view application, std::string_view section, std::string_view key,
                         std::string_view fallback) override;
  std::string CaminhoBaseTemp() override { return {}; }
  void GuardarCaminhoBaseTemp(std::string_view /*caminho*/) override {}

  std::unique_ptr<BancoTemporario> CriarBancoTemporario() override;
  std::unique_ptr<ConsultaDeclaracoes> CriarConsultaDeclaracoes() override;
  std::unique_ptr<ValidadorDocumentos> CriarValidadorDocumentos() override;
  std::unique_ptr<Gravador> CriarGravador(Kind registro) override;

  MemoryReferenceEngine engine_;
};

}  // namespace tremvik
