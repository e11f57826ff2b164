#include "records/declaration.h"

#include "records/cfop.h"
#include "records/dipam.h"
#include "records/exports.h"
#include "records/header.h"
#include "records/occurrence.h"
#include "records/payments.h"

namespace tremvik {

// QtdeCR07 alone is not set back; the next header overwrites it.
Verdict ValidarDeclaracao(Pass& pass, EstadoCabecalhos& cabecalhos, Events& events) {
  EstadoDeclaracao& declaracao = pass.declaracao;
  const Record<Cr05>& cabecalho = pass.registros.RegistroDeclaracao;
  declaracao.acumuladores = {};
  events.Progresso();
  if (auto refused = ValidarCR05(pass, cabecalhos)) return refused;
  events.Progresso();
  if (auto refused = ValidarCR05Cruzado(pass, cabecalhos)) return refused;
  events.Progresso();
  if (auto refused = VerificarReferenciaExistente(pass)) return refused;
  declaracao.ChaveDeclaracao.assign(cabecalho[Cr05::kIE]).append(cabecalho[Cr05::kRef]);
  GravarCR05(pass);
  events.Progresso();
  if (declaracao.QtdeCR07 > 0) {
    events.Progresso();
    if (auto refused = ValidarCR07(pass)) return refused;
  }
  if (declaracao.QtdeCR10 > 0) {
    events.Progresso();
    if (auto refused = ValidarCR10(pass)) return refused;
  }
  declaracao.QtdeCR10 = 0;
  events.Progresso();
  if (declaracao.QtdeCR20 > 0) {
    events.Progresso();
    if (auto refused = ValidarCR20(pass)) return refused;
  }
  declaracao.QtdeCR20 = 0;
  if (declaracao.QtdeCR30 > 0) {
    if (auto refused = ValidarCR30(pass)) return refused;
  }
  declaracao.QtdeCR30 = 0;
  if (declaracao.QtdeCR31 > 0) {
    if (auto refused = ValidarCR31(pass)) return refused;
  }
  declaracao.QtdeCR31 = 0;
  return Accepted;
}

}  // namespace tremvik
