#pragma once

#include <memory>

#include "adapters/trace/trace_sink.h"
#include "host/components.h"

namespace tremvik {

/// Makes the wrapped factory's components, each behind one that reports to the sink.
class TracingComponents final : public ComponentFactory {
 public:
  TracingComponents(ComponentFactory& inner, TraceSink& sink, bool gravacoes)
      : inner_(inner), sink_(sink), gravacoes_(gravacoes) {}

  std::unique_ptr<BancoTemporario> CriarBancoTemporario() override;
  std::unique_ptr<ConsultaDeclaracoes> CriarConsultaDeclaracoes() override;
  std::unique_ptr<ValidadorDocumentos> CriarValidadorDocumentos() override;
  std::unique_ptr<Gravador> CriarGravador(Kind registro) override;

 private:
  ComponentFactory& inner_;
  TraceSink& sink_;
  bool gravacoes_;
};

}  // namespace tremvik
