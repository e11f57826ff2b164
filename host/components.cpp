#include "host/components.h"

#include <utility>

namespace tremvik {

BancoTemporario& Components::banco() {
  if (!banco_) banco_ = factory_.CriarBancoTemporario();
  return *banco_;
}

ConsultaDeclaracoes& Components::consulta() {
  if (!consulta_) {
    auto made = factory_.CriarConsultaDeclaracoes();
    made->CaminhoBase(application_.CaminhoBaseTemp());
    consulta_ = std::move(made);
  }
  return *consulta_;
}

ValidadorDocumentos& Components::documentos() {
  if (!documentos_) documentos_ = factory_.CriarValidadorDocumentos();
  return *documentos_;
}

Gravador& Components::gravador(Kind registro) {
  auto& kept = gravadores_[registro];
  if (!kept) {
    auto made = factory_.CriarGravador(registro);
    made->CaminhoBase(application_.CaminhoBaseTemp());
    kept = std::move(made);
  }
  return *kept;
}

}  // namespace tremvik
