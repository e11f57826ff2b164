#include "component/reports.h"

#include <string>
#include <utility>

namespace tremvik {
namespace {

constexpr std::string_view kContato =
    "Sr(a) usuário(a), entre em contato com a empresa\r\n"
    "responsável pela geração do arquivo Pré-Formatado\r\n"
    "e informe a mensagem abaixo : \r\n\r\n";

// A refusal as the host is told of it, valid as long as both arguments.
FaultLocation Told(const Refusal& refusal, std::string_view mensagem) {
  FaultLocation fault = refusal.where;
  fault.regra = refusal.regra;
  fault.mensagem = mensagem;
  fault.porque = refusal.porque;
  return fault;
}

}  // namespace

void Reports::ErroSair() {
  const std::string texto =
      std::string(kContato) + state_.MensagemErro + "\r\nLinha nº " + std::to_string(state_.NumeroLinha);
  host_.screen.MsgBox(texto, state_.EstiloMensagem, state_.TituloMensagem);
  host_.events.Fechar();
  components_.banco().Encerrar(host_.application.CaminhoBaseTemp());
}

void Reports::Relatar(const Refusal& refusal) {
  state_.MensagemErro = refusal.Mensagem();
  host_.diagnostics.Inconsistencia(Told(refusal, state_.MensagemErro));
  ErroSair();
}

void Reports::AvisarTamanho(const FileFault& fault) {
  host_.screen.SetPointer(ponteiro::kSeta);
  if (fault.place.linha > 0) host_.diagnostics.Inconsistencia(fault.Where());
  host_.screen.MsgBox(fault.mensagem, estilo::kCritico, "Mensagem...");
}

void Reports::AvisarErroDeTamanho(std::string_view mensagem) {
  host_.screen.SetPointer(ponteiro::kSeta);
  host_.screen.MsgBox(mensagem, estilo::kCritico, "Mensagem...");
}

void Reports::AvisarTotais(const Reconciliation& found) {
  std::string texto;
  for (const FileFault& fault : found.faults) {
    host_.diagnostics.Inconsistencia(fault.Where());
    texto += fault.mensagem;
    if (found.achado == Reconciliation::Achado::kDiverge) texto += kCrLf;
  }
  host_.screen.MsgBox(texto, estilo::kCritico, "Atenção");
}

void Reports::AvisarDeclaracoes(const Refusal& refusal) {
  const std::string mensagem = refusal.Mensagem();
  host_.diagnostics.Inconsistencia(Told(refusal, mensagem));
  host_.screen.MsgBox(mensagem, estilo::kInformacao, "Atenção");
}

void Reports::TerminarComRecusa(const Refusal& refusal, BlockReader& arquivo) {
  if (!refusal.answered) Relatar(refusal);
  arquivo.Close();
  host_.screen.SetPointer(ponteiro::kPadrao);
}

Verdict Reports::Perguntar(Refusal question) {
  const std::string mensagem = question.Mensagem();
  state_.MensagemErro = std::string(kContato) + mensagem + "\r\nDeseja continuar Sim/Não ? ";
  host_.diagnostics.Duvida(Told(question, mensagem));
  constexpr int kEstilo = estilo::kSimNao + estilo::kInformacao + estilo::kSegundoBotaoPadrao;
  if (host_.screen.MsgBox(state_.MensagemErro, kEstilo, "Atenção") != resposta::kNao) return Accepted;
  question.answered = true;
  return question;
}

}  // namespace tremvik
