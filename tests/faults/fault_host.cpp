#include "tests/faults/fault_host.h"

#include <utility>

#include "host/runtime_error.h"

namespace tremvik::test {
namespace {

constexpr int kErroDoObjeto = 440;        // an automation object's own error
constexpr int kItemNaoEncontrado = 3265;  // a field that is not there
constexpr int kSemRegistroAtual = 3021;

class FaultBanco final : public BancoTemporario {
 public:
  FaultBanco(std::unique_ptr<BancoTemporario> inner, FaultPlan& plan)
      : inner_(std::move(inner)), plan_(plan) {}
  void Preparar() override {
    plan_.Call(erro::kDiscoCheio);
    inner_->Preparar();
  }
  std::int16_t Abrir(std::string_view caminho) override {
    plan_.Call(erro::kBancoEmUso);
    return inner_->Abrir(caminho);
  }
  void Encerrar(std::string_view caminho) override {
    plan_.Call(erro::kDiscoCheio);
    inner_->Encerrar(caminho);
  }

 private:
  std::unique_ptr<BancoTemporario> inner_;
  FaultPlan& plan_;
};

class FaultConsulta final : public ConsultaDeclaracoes {
 public:
  FaultConsulta(std::unique_ptr<ConsultaDeclaracoes> inner, FaultPlan& plan)
      : inner_(std::move(inner)), plan_(plan) {}
  void CaminhoBase(std::string_view caminho) override {
    plan_.Call(kErroDoObjeto);
    inner_->CaminhoBase(caminho);
  }
  bool Existe(std::string_view ie, std::string_view uf, std::string_view regime, std::string_view referencia,
              std::string_view referencia_inicial) override {
    plan_.Call(erro::kBancoEmUso);
    return inner_->Existe(ie, uf, regime, referencia, referencia_inicial);
  }

 private:
  std::unique_ptr<ConsultaDeclaracoes> inner_;
  FaultPlan& plan_;
};

class FaultDocumentos final : public ValidadorDocumentos {
 public:
  FaultDocumentos(std::unique_ptr<ValidadorDocumentos> inner, FaultPlan& plan)
      : inner_(std::move(inner)), plan_(plan) {}
  bool ValidarIE(std::string_view ie) override {
    plan_.Call(kErroDoObjeto);
    return inner_->ValidarIE(ie);
  }
  bool ValidarCNPJ(std::string_view cnpj) override {
    plan_.Call(kErroDoObjeto);
    return inner_->ValidarCNPJ(cnpj);
  }

 private:
  std::unique_ptr<ValidadorDocumentos> inner_;
  FaultPlan& plan_;
};

class FaultGravador final : public Gravador {
 public:
  FaultGravador(std::unique_ptr<Gravador> inner, FaultPlan& plan) : inner_(std::move(inner)), plan_(plan) {}
  void CaminhoBase(std::string_view caminho) override {
    plan_.Call(kErroDoObjeto);
    inner_->CaminhoBase(caminho);
  }
  void Campo(std::string_view nome, std::string_view texto) override {
    plan_.Call(kItemNaoEncontrado);
    inner_->Campo(nome, texto);
  }
  void Gravar() override {
    plan_.Call(erro::kDiscoCheio);
    inner_->Gravar();
  }

 private:
  std::unique_ptr<Gravador> inner_;
  FaultPlan& plan_;
};

class FaultRows final : public Recordset {
 public:
  explicit FaultRows(FaultPlan& plan) : plan_(plan) {}
  FaultRows& Wrap(Recordset& inner) {
    inner_ = &inner;
    return *this;
  }
  long RecordCount() override {
    plan_.Call(kSemRegistroAtual);
    return inner_->RecordCount();
  }
  std::string_view Field(std::string_view name) override {
    plan_.Call(kItemNaoEncontrado);
    return inner_->Field(name);
  }
  void Close() override {
    plan_.Call(kSemRegistroAtual);
    inner_->Close();
  }

 private:
  FaultPlan& plan_;
  Recordset* inner_ = nullptr;
};

class FaultDatabase final : public Database {
 public:
  explicit FaultDatabase(FaultPlan& plan) : plan_(plan), rows_(plan) {}
  FaultDatabase& Wrap(Database& inner) {
    inner_ = &inner;
    return *this;
  }
  Recordset& OpenRecordset(std::string_view sql, int type) override {
    plan_.Call(erro::kParametrosInsuficientes);
    return rows_.Wrap(inner_->OpenRecordset(sql, type));
  }
  void Close() override {
    plan_.Call(erro::kBancoEmUso);
    inner_->Close();
  }

 private:
  FaultPlan& plan_;
  FaultRows rows_;
  Database* inner_ = nullptr;
};

}  // namespace

void FaultPlan::Call(int number) {
  ++count_;
  if (count_ == n_ || (count_ > n_ && reach_ == Reach::kFromThere)) throw RuntimeError(number);
}

// One look-up is open at a time.
struct FaultHost::Tables {
  FaultDatabase database;
};

FaultHost::FaultHost(const Host& inner, FaultPlan& plan)
    : inner_(inner), plan_(plan), tables_(new Tables{FaultDatabase(plan)}) {}

FaultHost::~FaultHost() = default;

int FaultHost::MsgBox(std::string_view text, int style, std::string_view title) {
  plan_.Call(erro::kMemoriaInsuficiente);
  return inner_.screen.MsgBox(text, style, title);
}
void FaultHost::SetPointer(int pointer) {
  plan_.Call(kErroDoObjeto);
  inner_.screen.SetPointer(pointer);
}
void FaultHost::Progresso() {
  plan_.Call(kErroDoObjeto);
  inner_.events.Progresso();
}
void FaultHost::Fechar() {
  plan_.Call(kErroDoObjeto);
  inner_.events.Fechar();
}
void FaultHost::Inconsistencia(const FaultLocation& where) {
  plan_.Call(kErroDoObjeto);
  inner_.diagnostics.Inconsistencia(where);
}
void FaultHost::Duvida(const FaultLocation& where) {
  plan_.Call(kErroDoObjeto);
  inner_.diagnostics.Duvida(where);
}
bool FaultHost::Exists(std::string_view path) {
  plan_.Call(erro::kPermissaoNegada);
  return inner_.files.Exists(path);
}
void FaultHost::Delete(std::string_view path) {
  plan_.Call(erro::kPermissaoNegada);
  inner_.files.Delete(path);
}
void FaultHost::Rename(std::string_view from, std::string_view to) {
  plan_.Call(erro::kAcessoAoCaminho);
  inner_.files.Rename(from, to);
}
int FaultHost::FreeFile() {
  plan_.Call(erro::kExcessoDeArquivos);
  return inner_.files.FreeFile();
}
void FaultHost::Open(int number, std::string_view path) {
  plan_.Call(erro::kArquivoNaoEncontrado);
  inner_.files.Open(number, path);
  open_.insert(number);
}
std::size_t FaultHost::Read(int number, char* buffer, std::size_t count) {
  plan_.Call(erro::kEntradaSaida);
  return inner_.files.Read(number, buffer, count);
}
void FaultHost::Close(int number) {
  inner_.files.Close(number);
  open_.erase(number);
  plan_.Call(erro::kEntradaSaida);
}
std::string FaultHost::AppPath() {
  plan_.Call(erro::kCaminhoNaoEncontrado);
  return inner_.application.AppPath();
}
std::string FaultHost::GetSetting(std::string_view application, std::string_view section,
                                  std::string_view key, std::string_view fallback) {
  plan_.Call(erro::kArgumentoInvalido);
  return inner_.application.GetSetting(application, section, key, fallback);
}
Database& FaultHost::OpenDatabase(std::string_view path) {
  plan_.Call(erro::kBancoNaoEncontrado);
  return tables_->database.Wrap(inner_.engine.OpenDatabase(path));
}
std::unique_ptr<BancoTemporario> FaultHost::CriarBancoTemporario() {
  plan_.Call(erro::kComponenteNaoCriado);
  return std::make_unique<FaultBanco>(inner_.components.CriarBancoTemporario(), plan_);
}
std::unique_ptr<ConsultaDeclaracoes> FaultHost::CriarConsultaDeclaracoes() {
  plan_.Call(erro::kComponenteNaoCriado);
  return std::make_unique<FaultConsulta>(inner_.components.CriarConsultaDeclaracoes(), plan_);
}
std::unique_ptr<ValidadorDocumentos> FaultHost::CriarValidadorDocumentos() {
  plan_.Call(erro::kComponenteNaoCriado);
  return std::make_unique<FaultDocumentos>(inner_.components.CriarValidadorDocumentos(), plan_);
}
std::unique_ptr<Gravador> FaultHost::CriarGravador(Gravavel registro) {
  plan_.Call(erro::kComponenteNaoCriado);
  return std::make_unique<FaultGravador>(inner_.components.CriarGravador(registro), plan_);
}

}  // namespace tremvik::test
