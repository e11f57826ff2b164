#include "checks/verdict.h"

namespace tremvik {

std::string Refusal::Mensagem() const {
  std::string mensagem = first;
  if (!second.empty()) mensagem.append(kCrLf).append(second);
  return mensagem;
}

}  // namespace tremvik
