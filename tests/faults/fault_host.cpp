#include "tests/faults/fault_host.h"

#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "host/runtime_error.h"

namespace tremvik::test {
namespace {

constexpr int kErroDoObjeto = 440;        // an automation object's own error
constexpr int kItemNaoEncontrado = 3265;  // a field that is not there
constexpr int kSemRegistroAtual = 3021;

// One of the plan's calls, whose failure has that number.
void Count(FaultPlan& plan, int number) {
  if (plan.Strikes()) throw RuntimeError(number);
}

// A collaborator in front of another one: `Call` counts a call and gives the one behind.
template <typename Collaborator>
class Front : public Collaborator {
 public:
  explicit Front(FaultPlan& plan, Collaborator* inner = nullptr) : plan_(plan), inner_(inner) {}
  Front& Wrap(Collaborator& inner) {
    inner_ = &inner;
    return *this;
  }

 protected:
  ~Front() = default;
  Collaborator& Call(int number) {
    Count(plan_, number);
    return *inner_;
  }
  FaultPlan& plan_;
  Collaborator* inner_;
};

// One that owns the component behind.
template <typename Component>
class Owner : public Front<Component> {
 public:
  Owner(std::unique_ptr<Component> inner, FaultPlan& plan) : Front<Component>(plan, inner.get()), owned_(std::move(inner)) {}

 private:
  std::unique_ptr<Component> owned_;
};

struct FaultBanco final : Owner<BancoTemporario> {
  using Owner::Owner;
  void Preparar() override { Call(erro::kDiscoCheio).Preparar(); }
  std::int16_t Abrir(std::string_view caminho) override { return Call(erro::kBancoEmUso).Abrir(caminho); }
  void Encerrar(std::string_view caminho) override { Call(erro::kDiscoCheio).Encerrar(caminho); }
};

struct FaultConsulta final : Owner<ConsultaDeclaracoes> {
  using Owner::Owner;
  void CaminhoBase(std::string_view caminho) override { Call(kErroDoObjeto).CaminhoBase(caminho); }
  bool Existe(std::string_view ie, std::string_view uf, std::string_view regime, std::string_view referencia,
              std::string_view referencia_inicial) override {
    return Call(erro::kBancoEmUso).Existe(ie, uf, regime, referencia, referencia_inicial);
  }
};

struct FaultDocumentos final : Owner<ValidadorDocumentos> {
  using Owner::Owner;
  bool ValidarIE(std::string_view ie) override { return Call(kErroDoObjeto).ValidarIE(ie); }
  bool ValidarCNPJ(std::string_view cnpj) override { return Call(kErroDoObjeto).ValidarCNPJ(cnpj); }
};

struct FaultGravador final : Owner<Gravador> {
  using Owner::Owner;
  void CaminhoBase(std::string_view caminho) override { Call(kErroDoObjeto).CaminhoBase(caminho); }
  void Campo(std::string_view nome, std::string_view texto) override { Call(kItemNaoEncontrado).Campo(nome, texto); }
  void Gravar() override { Call(erro::kDiscoCheio).Gravar(); }
};

struct FaultRows final : Front<Recordset> {
  using Front::Front;
  long RecordCount() override { return Call(kSemRegistroAtual).RecordCount(); }
  std::string_view Field(std::string_view name) override { return Call(kItemNaoEncontrado).Field(name); }
  void Close() override { Call(kSemRegistroAtual).Close(); }
};

struct FaultDatabase final : Front<Database> {
  using Front::Front;
  Recordset& OpenRecordset(std::string_view sql, int type) override {
    return rows.Wrap(Call(erro::kParametrosInsuficientes).OpenRecordset(sql, type));
  }
  void Close() override { Call(erro::kBancoEmUso).Close(); }
  FaultRows rows{plan_};
};

}  // namespace

struct FaultHost::Faulty final : Screen, Events, Diagnostics, Files, Application, ReferenceEngine, ComponentFactory {
  Faulty(const Host& inner, FaultPlan& of) : behind(inner), plan(of) {}
  const Host& Call(int number) {
    Count(plan, number);
    return behind;
  }

  int MsgBox(std::string_view text, int style, std::string_view title) override {
    return Call(erro::kMemoriaInsuficiente).screen.MsgBox(text, style, title);
  }
  void SetPointer(int pointer) override { Call(kErroDoObjeto).screen.SetPointer(pointer); }
  void Progresso() override { Call(kErroDoObjeto).events.Progresso(); }
  void Fechar() override { Call(kErroDoObjeto).events.Fechar(); }
  void Inconsistencia(const FaultLocation& where) override { Call(kErroDoObjeto).diagnostics.Inconsistencia(where); }
  void Duvida(const FaultLocation& where) override { Call(kErroDoObjeto).diagnostics.Duvida(where); }
  bool Exists(std::string_view path) override { return Call(erro::kPermissaoNegada).files.Exists(path); }
  void Delete(std::string_view path) override { Call(erro::kPermissaoNegada).files.Delete(path); }
  void Rename(std::string_view from, std::string_view to) override { Call(erro::kAcessoAoCaminho).files.Rename(from, to); }
  int FreeFile() override { return Call(erro::kExcessoDeArquivos).files.FreeFile(); }
  void Open(int number, std::string_view path) override {
    Call(erro::kArquivoNaoEncontrado).files.Open(number, path);
    open.insert(number);
  }
  std::size_t Read(int number, char* buffer, std::size_t count) override {
    return Call(erro::kEntradaSaida).files.Read(number, buffer, count);
  }
  void Close(int number) override {
    behind.files.Close(number);
    open.erase(number);
    Count(plan, erro::kEntradaSaida);
  }
  std::string AppPath() override { return Call(erro::kCaminhoNaoEncontrado).application.AppPath(); }
  std::string GetSetting(std::string_view application, std::string_view section, std::string_view key, std::string_view fallback) override {
    return Call(erro::kArgumentoInvalido).application.GetSetting(application, section, key, fallback);
  }
  std::string CaminhoBaseTemp() override { return behind.application.CaminhoBaseTemp(); }
  void GuardarCaminhoBaseTemp(std::string_view caminho) override { behind.application.GuardarCaminhoBaseTemp(caminho); }
  Database& OpenDatabase(std::string_view path) override {
    return database.Wrap(Call(erro::kBancoNaoEncontrado).engine.OpenDatabase(path));
  }
  std::unique_ptr<BancoTemporario> CriarBancoTemporario() override {
    return std::make_unique<FaultBanco>(Made().CriarBancoTemporario(), plan);
  }
  std::unique_ptr<ConsultaDeclaracoes> CriarConsultaDeclaracoes() override {
    return std::make_unique<FaultConsulta>(Made().CriarConsultaDeclaracoes(), plan);
  }
  std::unique_ptr<ValidadorDocumentos> CriarValidadorDocumentos() override {
    return std::make_unique<FaultDocumentos>(Made().CriarValidadorDocumentos(), plan);
  }
  std::unique_ptr<Gravador> CriarGravador(Kind registro) override {
    return std::make_unique<FaultGravador>(Made().CriarGravador(registro), plan);
  }
  ComponentFactory& Made() { return Call(erro::kComponenteNaoCriado).components; }

  Host behind;
  FaultPlan& plan;
  std::set<int> open;
  FaultDatabase database{plan};
};

FaultHost::FaultHost(const Host& inner, FaultPlan& plan) : faulty_(std::make_unique<Faulty>(inner, plan)) {}
FaultHost::~FaultHost() = default;
Host FaultHost::host() { return {*faulty_, *faulty_, *faulty_, *faulty_, *faulty_, *faulty_, *faulty_}; }
std::size_t FaultHost::open_files() const { return faulty_->open.size(); }

}  // namespace tremvik::test
