#include "component/reports.h"

#include <string>
#include <utility>

namespace tremvik {
namespace {

constexpr std::string_view kContato =
    "Sr(a) usuário(a), entre em contato com a empresa\r\n"
    "responsável pela geração do arquivo Pré-Formatado\r\n"
    "e informe a mensagem abaixo : \r\n\r\n";

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
  host_.diagnostics.Inconsistencia(refusal.where);
  ErroSair();
}

void Reports::AvisarTamanho(const LengthFault& fault) {
  host_.screen.SetPointer(ponteiro::kSeta);
  if (fault.place) host_.diagnostics.Inconsistencia(fault.place->Where());
  host_.screen.MsgBox(fault.mensagem, estilo::kCritico, "Mensagem...");
}

void Reports::AvisarTotais(const Reconciliation& found) {
  for (const Place& place : found.places)
    host_.diagnostics.Inconsistencia(place.Where());
  host_.screen.MsgBox(found.mensagem, estilo::kCritico, "Atenção");
}

void Reports::TerminarComRecusa(const Refusal& refusal, BlockReader& arquivo) {
  if (!refusal.answered) Relatar(refusal);
  arquivo.Close();
  host_.screen.SetPointer(ponteiro::kPadrao);
}

Verdict Reports::Perguntar(Refusal question) {
  state_.MensagemErro = std::string(kContato) + question.Mensagem() + "\r\nDeseja continuar Sim/Não ? ";
  host_.diagnostics.Duvida(question.where);
  constexpr int kEstilo = estilo::kSimNao + estilo::kInformacao + estilo::kSegundoBotaoPadrao;
  if (host_.screen.MsgBox(state_.MensagemErro, kEstilo, "Atenção") != resposta::kNao) return Accepted;
  question.answered = true;
  return question;
}

}  // namespace tremvik
