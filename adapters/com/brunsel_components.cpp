#include "adapters/com/brunsel_components.h"

#include "adapters/com/late_bound.h"
#include "adapters/com/registry.h"
#include "adapters/com/win_files.h"
#include "adapters/com/windows_api.h"

namespace tremvik::com {
namespace {

LateBound Create(const std::wstring& class_name) {
  const std::wstring redirections = LR"(Software\DllTremvik\Componentes)";
  const std::wstring name = L"Brunsel." + class_name;
  for (HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
    if (const auto other = ReadText(root, redirections, name)) return LateBound::Create(*other);
  }
  return LateBound::Create(name);
}

struct Banco final : BancoTemporario {
  explicit Banco(std::string_view folder) : pasta(folder) {}
  // The host tells what it could not do, and seldom why.
  void Preparar() override {
    try {
      object.Call(L"Preparar");
    } catch (const RuntimeError& error) {
      if (MayWrite(pasta)) throw;
      throw RuntimeError(error.number(), error.description() + "; " + Unwritable(pasta));
    }
  }
  std::int16_t Abrir(std::string_view caminho) override {
    return object.Get<std::int16_t>(L"Abrir", caminho);
  }
  void Encerrar(std::string_view caminho) override { object.Call(L"Encerrar", caminho); }
  std::string pasta;
  LateBound object = Create(L"BancoTemporario");
};

struct Consulta final : ConsultaDeclaracoes {
  void CaminhoBase(std::string_view caminho) override { object.Put(L"CaminhoBase", Variant(caminho)); }
  bool Existe(std::string_view ie, std::string_view uf, std::string_view regime, std::string_view referencia,
              std::string_view referencia_inicial) override {
    return object.Get<bool>(L"Existe", ie, uf, regime, referencia, referencia_inicial);
  }
  LateBound object = Create(L"ConsultaDeclaracoes");
};

struct Documentos final : ValidadorDocumentos {
  bool ValidarIE(std::string_view ie) override { return object.Get<bool>(L"ValidarIE", ie); }
  bool ValidarCNPJ(std::string_view cnpj) override { return object.Get<bool>(L"ValidarCNPJ", cnpj); }
  LateBound object = Create(L"ValidadorDocumentos");
};

struct GravadorDoHost final : Gravador {
  explicit GravadorDoHost(Kind registro) : object(Create(L"GravadorCR" + Wide(Codigo(registro)))) {}
  void CaminhoBase(std::string_view caminho) override { object.Put(L"CaminhoBase", Variant(caminho)); }
  void Campo(std::string_view nome, std::string_view texto) override { object.Call(L"Campo", nome, texto); }
  void Gravar() override { object.Call(L"Gravar"); }
  LateBound object;
};

}  // namespace

std::unique_ptr<BancoTemporario> BrunselComponents::CriarBancoTemporario() {
  return std::make_unique<Banco>(folder_);
}
std::unique_ptr<ConsultaDeclaracoes> BrunselComponents::CriarConsultaDeclaracoes() {
  return std::make_unique<Consulta>();
}
std::unique_ptr<ValidadorDocumentos> BrunselComponents::CriarValidadorDocumentos() {
  return std::make_unique<Documentos>();
}
std::unique_ptr<Gravador> BrunselComponents::CriarGravador(Kind registro) {
  return std::make_unique<GravadorDoHost>(registro);
}

}  // namespace tremvik::com
