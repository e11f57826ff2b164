#include "component/import_run.h"

#include <string>

#include "host/runtime_error.h"
#include "input/text_reader.h"
#include "passes/length_pass.h"
#include "passes/reconciliation.h"
#include "records/declaration.h"
#include "records/master_record.h"
#include "runtime/int16.h"

namespace tremvik {
namespace {

using Estado = Outcome::Estado;

bool Failed(const Outcome& outcome) {
  return outcome.estado == Estado::kRecusado || outcome.estado == Estado::kErro;
}

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
  state_.outcome = {};
  host_.files.BeginRun();
  try {
    state_.outcome = Executar(path);
    if (Failed(state_.outcome)) state_.bolRetMonitora = true;
  } catch (...) {
    TratarErroAtual();
  }
  Tentar([this] { arquivo_.Close(); });
  host_.files.EndRun();
}

Outcome ImportRun::Executar(std::string_view path) {
  constexpr auto kRecusado = Estado::kRecusado;
  if (auto ended = ConferirTamanhos(path)) return *ended;
  if (CompararTotais(path)) return {kRecusado};
  state_.NumeroLinha = 0;
  PrepararBanco();
  state_.NumeroArquivo = host_.files.FreeFile();
  arquivo_.Open(state_.NumeroArquivo, path);
  if (ValidarMestre()) return {kRecusado};
  // A master block cut short is accepted only over an older one in the buffer; nothing follows it.
  if (arquivo_.EndOfFile()) return {Estado::kSilencio};
  if (ValidarDeclaracoes()) return {kRecusado};
  return {ConferirDeclaracoes() ? kRecusado : Estado::kAceito};
}

// The pass has a box of its own for everything, its run-time errors included.
std::optional<Outcome> ImportRun::ConferirTamanhos(std::string_view path) {
  try {
    state_.NumeroArquivoTexto = ToByte(host_.files.FreeFile());
    TextReader arquivo(host_.files, state_.NumeroArquivoTexto, path);
    const std::optional<FileFault> fault = ValidarTamanhos(arquivo);
    arquivo.Close();
    if (!fault) return std::nullopt;
    reports_.AvisarTamanho(*fault);
    return Outcome{Estado::kRecusado};
  } catch (...) {
    const RuntimeError error = CurrentRuntimeError();
    reports_.AvisarErroDeTamanho(error.number() == erro::kFimDoArquivo
                                     ? "Arquivo vazio ou inválido!"
                                     : "Erro " + std::to_string(error.number()) + " -  " +
                                           error.description());
    return Outcome{Estado::kErro, error.number(), error.description()};
  }
}

bool ImportRun::CompararTotais(std::string_view path) {
  using Achado = Reconciliation::Achado;
  host_.events.Progresso();
  state_.NumeroArquivoTexto = ToByte(host_.files.FreeFile());
  TextReader arquivo(host_.files, state_.NumeroArquivoTexto, path);
  const Reconciliation found = tremvik::CompararTotais(arquivo, state_.NumeroLinha);
  const bool read_whole = found.achado == Achado::kConfere || found.achado == Achado::kDiverge;
  if (read_whole) arquivo.Close();
  if (found.achado == Achado::kCodigoDesconhecido) {
    const FileFault& fault = found.faults.front();
    reports_.Relatar({fault.regra, fault.mensagem, {}, fault.Where()});
  } else if (found.achado != Achado::kConfere) {
    reports_.AvisarTotais(found);
  }
  arquivo.Close();
  if (read_whole) host_.events.Progresso();
  return found.achado != Achado::kConfere;
}

void ImportRun::PrepararBanco() {
  const std::string pasta = host_.application.AppPath();
  const std::string temporario = pasta + "\\BDTempPrf.fix";
  if (host_.files.Exists(temporario)) host_.files.Delete(temporario);
  components_.banco().Preparar();
  state_.database_name = host_.application.GetSetting("Brunsel", "DB", "DbAtual", "");
  host_.files.Rename(pasta + "\\BDTemp.mdb", temporario);
  host_.application.GuardarCaminhoBaseTemp(temporario);
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
    components_.banco().Encerrar(host_.application.CaminhoBaseTemp());
    return false;
  }
  reports_.AvisarDeclaracoes(Refuse("ARQ-18", state_.registros.RegistroMestre, Cr01::kQ05,
                                    "Tabela 01, CR=01, Campo - Q05", "Inconsistente, Posição 27")
                                 .Porque("informadas: " + std::to_string(state_.QuantidadeDeclaracoes) +
                                         "; lidas: " + std::to_string(state_.DeclaracoesLidas)));
  arquivo_.Close();
  host_.screen.SetPointer(ponteiro::kPadrao);
  return true;
}

void ImportRun::TratarErroAtual() noexcept {
  state_.outcome = {Estado::kErro, erro::kMemoriaInsuficiente, {}};  // should telling it fail
  Tentar([this] {
    const RuntimeError error = CurrentRuntimeError();
    state_.outcome.numero = error.number();
    state_.outcome.descricao = error.description();
    state_.MensagemErro = std::to_string(error.number()) + " - " + error.description();
  });
  Tentar([this] { arquivo_.Close(); });
  Tentar([this] { components_.banco().Encerrar(host_.application.CaminhoBaseTemp()); });
  state_.bolRetMonitora = true;
  Tentar([this] { reports_.ErroSair(); });
}

}  // namespace tremvik
