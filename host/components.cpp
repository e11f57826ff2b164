#include "host/components.h"

#include <utility>

namespace tremvik {

std::string_view Codigo(Gravavel registro) {
  static constexpr std::array<std::string_view, kGravaveis> kCodigos{"05", "07", "10", "14", "18", "20",
                                                                     "25", "26", "27", "28", "30", "31"};
  return kCodigos.at(static_cast<std::size_t>(registro));
}

BancoTemporario& Components::banco() {
  if (!banco_) banco_ = factory_.CriarBancoTemporario();
  return *banco_;
}

ConsultaDeclaracoes& Components::consulta() {
  if (!consulta_) {
    auto made = factory_.CriarConsultaDeclaracoes();
    made->CaminhoBase(caminho_);
    consulta_ = std::move(made);
  }
  return *consulta_;
}

ValidadorDocumentos& Components::documentos() {
  if (!documentos_) documentos_ = factory_.CriarValidadorDocumentos();
  return *documentos_;
}

Gravador& Components::gravador(Gravavel registro) {
  auto& kept = gravadores_.at(static_cast<std::size_t>(registro));
  if (!kept) {
    auto made = factory_.CriarGravador(registro);
    made->CaminhoBase(caminho_);
    kept = std::move(made);
  }
  return *kept;
}

}  // namespace tremvik
