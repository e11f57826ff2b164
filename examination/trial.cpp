#include "examination/trial.h"

#include <algorithm>
#include <memory>

#include "component/tremvik.h"
#include "host/runtime_error.h"
#include "runtime/text.h"

namespace tremvik {
namespace {

struct NoDatabase final : BancoTemporario {
  void Preparar() override {}
  std::int16_t Abrir(std::string_view /*caminho*/) override { return 1; }
  void Encerrar(std::string_view /*caminho*/) override {}
};

class Counter final : public Gravador {
 public:
  explicit Counter(int& records) : records_(records) {}
  [[nodiscard]] bool LeCampos() const override { return false; }
  void CaminhoBase(std::string_view /*caminho*/) override {}
  void Campo(std::string_view /*nome*/, std::string_view /*texto*/) override {}
  void Gravar() override { ++records_; }

 private:
  int& records_;
};

class Held final : public ConsultaDeclaracoes {
 public:
  Held(std::unique_ptr<ConsultaDeclaracoes> host, const Suppressed& suppressed, bool& held)
      : host_(std::move(host)), suppressed_(suppressed), held_(held) {}
  void CaminhoBase(std::string_view caminho) override { host_->CaminhoBase(caminho); }
  bool Existe(std::string_view ie, std::string_view uf, std::string_view regime, std::string_view referencia,
              std::string_view referencia_inicial) override {
    held_ = !suppressed_.declaracoes.contains(std::string(ie).append(referencia)) &&
            host_->Existe(ie, uf, regime, referencia, referencia_inicial);
    return held_;
  }

 private:
  std::unique_ptr<ConsultaDeclaracoes> host_;
  const Suppressed& suppressed_;
  bool& held_;
};

class CheckDigits final : public ValidadorDocumentos {
 public:
  CheckDigits(std::unique_ptr<ValidadorDocumentos> host, const Suppressed& suppressed, bool& invalid)
      : host_(std::move(host)), suppressed_(suppressed), invalid_(invalid) {}
  bool ValidarIE(std::string_view ie) override {
    return Valid(suppressed_.documentos.contains(ie) || host_->ValidarIE(ie));
  }
  bool ValidarCNPJ(std::string_view cnpj) override {
    return Valid(suppressed_.documentos.contains(cnpj) || host_->ValidarCNPJ(cnpj));
  }
  std::string IECerta(std::string_view ie) override { return host_->IECerta(ie); }
  std::string CNPJCerto(std::string_view cnpj) override { return host_->CNPJCerto(cnpj); }

 private:
  bool Valid(bool valid) {
    invalid_ = !valid;
    return valid;
  }

  std::unique_ptr<ValidadorDocumentos> host_;
  const Suppressed& suppressed_;
  bool& invalid_;
};

// The host of a trial: the file in memory, silence on the screen, everything told written down.
class TrialHost final : public Screen,
                        public Events,
                        public Diagnostics,
                        public Files,
                        public Application,
                        public ComponentFactory {
 public:
  TrialHost(std::string_view text, std::string_view blocks, const Host& host, const Suppressed& suppressed)
      : text_(text), blocks_(blocks), host_(host), suppressed_(suppressed) {}

  [[nodiscard]] Host host() { return {*this, *this, *this, *this, *this, host_.engine, *this}; }
  [[nodiscard]] RunPass pass() const { return static_cast<RunPass>(std::clamp(openings_, 1, 3)); }
  std::vector<Told> told;
  ByKind<int> stored;
  bool invalid_document = false;
  bool held = false;
  std::string box;

  int MsgBox(std::string_view text, int /*style*/, std::string_view /*title*/) override {
    box = text;
    return resposta::kSim;
  }
  void SetPointer(int /*pointer*/) override {}
  void Progresso() override {}
  void Fechar() override {}
  void Inconsistencia(const FaultLocation& where) override { Note(where, FindingKind::kFault); }
  void Duvida(const FaultLocation& where) override { Note(where, FindingKind::kQuestion); }

  bool Exists(std::string_view /*path*/) override { return false; }
  void Delete(std::string_view /*path*/) override {}
  void Rename(std::string_view /*from*/, std::string_view /*to*/) override {}
  int FreeFile() override { return 1; }
  // The passes over the whole file open it first, the run over its records last.
  void Open(int /*number*/, std::string_view /*path*/) override {
    ++openings_;
    rest_ = pass() == RunPass::kRules ? blocks_ : text_;
  }
  std::size_t Read(int /*number*/, char* buffer, std::size_t count) override {
    const std::string_view piece = rest_.substr(0, count);
    std::ranges::copy(piece, buffer);
    rest_.remove_prefix(piece.size());
    return piece.size();
  }
  void Close(int /*number*/) override {}

  std::string AppPath() override { return host_.application.AppPath(); }
  std::string GetSetting(std::string_view /*application*/, std::string_view /*section*/,
                         std::string_view /*key*/, std::string_view fallback) override {
    return std::string(fallback);
  }

  std::string CaminhoBaseTemp() override { return path_; }
  void GuardarCaminhoBaseTemp(std::string_view caminho) override { path_ = caminho; }

  std::unique_ptr<BancoTemporario> CriarBancoTemporario() override { return std::make_unique<NoDatabase>(); }
  std::unique_ptr<ConsultaDeclaracoes> CriarConsultaDeclaracoes() override {
    return std::make_unique<Held>(host_.components.CriarConsultaDeclaracoes(), suppressed_, held);
  }
  std::unique_ptr<ValidadorDocumentos> CriarValidadorDocumentos() override {
    return std::make_unique<CheckDigits>(host_.components.CriarValidadorDocumentos(), suppressed_,
                                         invalid_document);
  }
  std::unique_ptr<Gravador> CriarGravador(Kind kind) override {
    return std::make_unique<Counter>(stored[kind]);
  }

 private:
  void Note(const FaultLocation& where, FindingKind tipo) {
    Finding finding;
    finding.tipo = tipo;
    finding.linha = where.linha;
    finding.coluna = where.posicao;
    finding.largura = where.largura;
    finding.registro = where.registro;
    finding.campo = where.campo;
    finding.valor = Utf8(where.valor);
    finding.regra = where.regra;
    finding.mensagem = where.mensagem;
    finding.porque = where.porque;
    told.push_back({std::move(finding), pass()});
  }

  std::string_view text_;
  std::string_view blocks_;
  const Host& host_;
  const Suppressed& suppressed_;
  std::string path_;
  int openings_ = 0;
  std::string_view rest_;
};

// Run-time errors that a record's content raises; any other is the machine's.
bool ComesFromTheFile(int erro) {
  return erro == erro::kEstouro || erro == erro::kTiposIncompativeis || erro == erro::kFimDoArquivo;
}

}  // namespace

// An error is told like a fault, with its number for a code.
Finding TrialResult::EndFinding() const {
  Finding finding;
  if (outcome.estado == Outcome::Estado::kErro) {
    finding.regra = "ERR-" + std::to_string(outcome.numero);
    finding.linha = ultima_linha;
    finding.mensagem = std::to_string(outcome.numero) + " - " + outcome.descricao;
  } else {
    finding.regra = "ARQ-01";
    finding.mensagem = last_message;
  }
  return finding;
}

TrialResult RunTrial(std::string_view text, std::string_view blocks, const Host& host,
                     const Suppressed& suppressed) {
  TrialHost trial(text, blocks, host, suppressed);
  Tremvik tremvik(trial.host());
  tremvik.Monitora("");
  const Outcome& outcome = tremvik.outcome();
  if (outcome.estado == Outcome::Estado::kErro && !ComesFromTheFile(outcome.numero)) {
    throw RuntimeError(outcome.numero, outcome.descricao);
  }
  TrialResult result;
  result.outcome = outcome;
  result.told = std::move(trial.told);
  result.invalid_document = trial.invalid_document;
  result.held = trial.held;
  result.declaracoes = trial.stored[Kind::kCr05];
  result.ultima_linha = tremvik.NroLinha();
  result.ended_in = trial.pass();
  result.last_message = std::move(trial.box);
  return result;
}

}  // namespace tremvik
