#include "component/tremvik.h"

#include <cassert>

#include "checks/credit_code.h"
#include "component/import_run.h"
#include "host/runtime_error.h"
#include "runtime/display.h"
#include "runtime/numbers.h"

namespace tremvik {

namespace {

// One call of those that run one at a time.
class Turn {
 public:
  explicit Turn(bool& busy) : busy_(busy) {
    if (busy_) throw RuntimeError(erro::kArgumentoInvalido);
    busy_ = true;
  }
  ~Turn() { busy_ = false; }
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;

 private:
  bool& busy_;
};

}  // namespace

/// Everything that an instance holds.
class Tremvik::Run {
 public:
  explicit Run(Host given) : host(given) {}

  Host host;
  RunState state;
  bool busy = false;
  Components components{host.components, host.application};
  Reports reports{host, state, components};
  ImportRun import{host, state, components, reports};
};

Tremvik::Tremvik(Host host) : run_(std::make_unique<Run>(host)) {}
Tremvik::~Tremvik() { assert(!run_->busy && "destroyed within a call that it makes"); }

bool Tremvik::bolRetMonitora() const { return run_->state.bolRetMonitora; }
void Tremvik::set_bolRetMonitora(bool valor) { run_->state.bolRetMonitora = valor; }
std::int16_t Tremvik::idxBanco() const { return run_->state.idxBanco; }
void Tremvik::set_idxBanco(std::int16_t valor) { run_->state.idxBanco = valor; }
const std::string& Tremvik::database_name() const { return run_->state.database_name; }
void Tremvik::set_database_name(std::string_view valor) { run_->state.database_name = valor; }

bool Tremvik::CompararTotais(std::string_view TextLine) {
  const Turn turn(run_->busy);
  return run_->import.CompararTotais(TextLine);
}

std::string Tremvik::FomataValor(std::string_view a) const { return std::string(tremvik::FomataValor(a)); }

std::string Tremvik::TiraZeros(std::string_view a) const {
  return std::string(tremvik::TiraZeros(run_->state.registros.RegistroDeclaracao[Cr05::kRef], a));
}

bool Tremvik::LefRigNumChr(std::string_view a, bool b, bool /*c*/) const {
  return tremvik::LefRigNumChr(a, b);
}

const std::string& Tremvik::linha() const { return run_->state.LinhaAtual; }
const std::string& Tremvik::Mensagem() const { return run_->state.MensagemErro; }
void Tremvik::ErroSair() {
  const Turn turn(run_->busy);
  run_->reports.ErroSair();
}
void Tremvik::Monitora(std::string_view NArq) {
  const Turn turn(run_->busy);
  run_->import.Monitora(NArq);
}
const Outcome& Tremvik::outcome() const { return run_->state.outcome; }
std::int16_t Tremvik::NroLinha() const { return run_->state.NumeroLinha; }

bool Tremvik::Validar_Cod_CredAcumulado() const {
  const Registros& registros = run_->state.registros;
  return CodCredAcumuladoRejeitado(
      registros.RegistroCR28[Cr28::kCodAutorizacao], registros.RegistroCR28[Cr28::kValor],
      registros.RegistroCR20[Cr20::kCodSubItem], registros.RegistroDeclaracao[Cr05::kIE]);
}

}  // namespace tremvik
