// The host program's own components, called by the names of their members.
#pragma once

#include <string>
#include <utility>

#include "host/components.h"

namespace tremvik::com {

/// Makes the host's components by their class names ("Brunsel.BancoTemporario"). A value of that name under
/// Software\DllTremvik\Componentes, of the user before the machine's, puts another class in its place.
class BrunselComponents final : public ComponentFactory {
 public:
  /// `folder` is the component's own, where the host makes its empty temporary database.
  explicit BrunselComponents(std::string folder) : folder_(std::move(folder)) {}
  std::unique_ptr<BancoTemporario> CriarBancoTemporario() override;
  std::unique_ptr<ConsultaDeclaracoes> CriarConsultaDeclaracoes() override;
  std::unique_ptr<ValidadorDocumentos> CriarValidadorDocumentos() override;
  std::unique_ptr<Gravador> CriarGravador(Kind registro) override;

 private:
  std::string folder_;
};

}  // namespace tremvik::com
