// The host program's own components, called by the names of their members.
#pragma once

#include <string>

#include "host/components.h"

namespace tremvik::com {

/// Makes the host's components by their class names ("Brunsel.BancoTemporario"). A value of that name under
/// Software\DllTremvik\Componentes, of the user before the machine's, puts another class in its place.
struct BrunselComponents final : ComponentFactory {
  std::unique_ptr<BancoTemporario> CriarBancoTemporario() override;
  std::unique_ptr<ConsultaDeclaracoes> CriarConsultaDeclaracoes() override;
  std::unique_ptr<ValidadorDocumentos> CriarValidadorDocumentos() override;
  std::unique_ptr<Gravador> CriarGravador(Kind registro) override;
};

}  // namespace tremvik::com
