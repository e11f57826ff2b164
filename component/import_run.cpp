#include "component/import_run.h"

#include <string>

#include "host/runtime_error.h"
#include "passes/length_pass.h"
#include "passes/reconciliation.h"
#include "records/declaration.h"
#include "records/master_record.h"
#include "runtime/int16.h"

namespace tremvik {
namespace {

// One step of the error handler: made whatever the steps before it did, its own error not told.
template <typename Step>
void Tentar(const Step& step) noexcept {
  try {
    step();
  } catch (...) {  // NOLINT(bugprone-empty-catch): the error that brought us here is the one to be told
  }
}

}  // namespace

void ImportRun::Monitora(std::string_view path) noexcept {
  host_.files.BeginRun();
  try {
    if (Executar(path)) state_.bolRetMonitora = true;
  } catch (...) {
    TratarErroAtual();
  }
  Tentar([this] { arquivo_.Close(); });
  host_.files.EndRun();
}

bool ImportRun::Executar(std::string_view path) {
  const LengthPassHost tamanhos{host_.files, host_.screen, host_.diagnostics};
  if (ValidarTamanhos(path, tamanhos, state_.NumeroArquivoTexto)) return true;
  if (CompararTotais(path)) return true;
  state_.NumeroLinha = 0;
  PrepararBanco();
  state_.NumeroArquivo = host_.files.FreeFile();
  arquivo_.Open(state_.NumeroArquivo, path);
  if (ValidarMestre()) return true;
  // A master block cut short is accepted only over an older one in the buffer; nothing follows it.
  if (arquivo_.EndOfFile()) return false;
  if (ValidarDeclaracoes()) return true;
  return ConferirDeclaracoes();
}

bool ImportRun::CompararTotais(std::string_view path) {
  const ReconciliationHost host{host_.files, host_.screen, host_.events, host_.diagnostics,
                                [this](const Refusal& refusal) { reports_.Relatar(refusal); }};
  return tremvik::CompararTotais(path, host, state_.NumeroArquivoTexto, state_.NumeroLinha);
}

void ImportRun::PrepararBanco() {
  const std::string pasta = host_.application.AppPath();
  const std::string temporario = pasta + "\\BDTempPrf.fix";
  if (host_.files.Exists(temporario)) host_.files.Delete(temporario);
  components_.banco().Preparar();
  state_.database_name = host_.application.GetSetting("Brunsel", "DB", "DbAtual", "");
  host_.files.Rename(pasta + "\\BDTemp.mdb", temporario);
  state_.CaminhoBaseTemp = temporario;
  state_.idxBanco = components_.banco().Abrir(temporario);
}

bool ImportRun::ValidarMestre() {
  Record<Cr01>& mestre = state_.registros.RegistroMestre;
  arquivo_.Next(mestre);
  state_.EstiloMensagem = estilo::kInformacao;
  state_.TituloMensagem = "Atenção";
  const Verdict verdict = ValidarCR01(mestre, state_.QuantidadeDeclaracoes);
  if (verdict) reports_.TerminarComRecusa(verdict.refusal(), arquivo_);
  return static_cast<bool>(verdict);
}

// A read that meets the end of the file has no whole header: the declarations are over.
bool ImportRun::ValidarDeclaracoes() {
  Pass pass{arquivo_, state_.registros, state_.declaracao, fixas_, components_, reports_};
  while (true) {
    arquivo_.Next(state_.registros.RegistroDeclaracao);
    if (arquivo_.EndOfFile()) return false;
    Increment(state_.DeclaracoesLidas);
    const Verdict verdict = ValidarDeclaracao(pass, state_.cabecalhos, host_.events);
    if (verdict) {
      reports_.TerminarComRecusa(verdict.refusal(), arquivo_);
      return true;
    }
  }
}

bool ImportRun::ConferirDeclaracoes() {
  if (state_.DeclaracoesLidas == state_.QuantidadeDeclaracoes) {
    arquivo_.Close();
    host_.screen.MsgBox("A importação foi concluída com sucesso!", estilo::kInformacao,
                        "Arquivo Pré-Formatado");
    components_.banco().Encerrar(state_.CaminhoBaseTemp);
    return false;
  }
  host_.diagnostics.Inconsistencia(Where(state_.registros.RegistroMestre, Cr01::kQ05));
  host_.screen.MsgBox("Tabela 01, CR=01, Campo - Q05\r\nInconsistente, Posição 27", estilo::kInformacao,
                      "Atenção");
  arquivo_.Close();
  host_.screen.SetPointer(ponteiro::kPadrao);
  return true;
}

void ImportRun::TratarErroAtual() noexcept {
  Tentar([this] {
    const RuntimeError error = CurrentRuntimeError();
    state_.MensagemErro = std::to_string(error.number()) + " - " + error.description();
  });
  Tentar([this] { arquivo_.Close(); });
  Tentar([this] { components_.banco().Encerrar(state_.CaminhoBaseTemp); });
  state_.bolRetMonitora = true;
  Tentar([this] { reports_.ErroSair(); });
}

}  // namespace tremvik
