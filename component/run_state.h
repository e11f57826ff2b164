#pragma once

#include <cstdint>
#include <string>

#include "host/outcome.h"
#include "layout/registros.h"
#include "records/state.h"

namespace tremvik {

/// The run state of one instance. Everything starts empty or zero; a run sets back `NumeroLinha` and
/// `outcome` only.
struct RunState {
  bool bolRetMonitora = false;
  Outcome outcome;
  std::int16_t idxBanco = 0;
  std::string database_name;

  std::uint8_t NumeroArquivoTexto = 0;  ///< file number of the text passes
  int NumeroArquivo = 0;                ///< file number of the binary run
  std::int16_t NumeroLinha = 0;         ///< records read, shown after "Linha nº "
  std::string LinhaAtual;               ///< published as `linha`; never written

  std::string MensagemErro;
  int EstiloMensagem = 0;
  std::string TituloMensagem;

  std::int16_t QuantidadeDeclaracoes = 0;  ///< Q05 of the master record
  std::int16_t DeclaracoesLidas = 0;       ///< headers read; never set back

  Registros registros;
  EstadoCabecalhos cabecalhos;
  EstadoDeclaracao declaracao;
};

}  // namespace tremvik
