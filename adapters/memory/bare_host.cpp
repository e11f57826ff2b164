#include "adapters/memory/bare_host.h"

#include "adapters/local/documents.h"
#include "host/runtime_error.h"

namespace tremvik {
namespace {

struct NoDatabase final : BancoTemporario {
  void Preparar() override {}
  std::int16_t Abrir(std::string_view /*caminho*/) override { return 1; }
  void Encerrar(std::string_view /*caminho*/) override {}
};

struct NothingHeld final : ConsultaDeclaracoes {
  void CaminhoBase(std::string_view /*caminho*/) override {}
  bool Existe(std::string_view /*ie*/, std::string_view /*uf*/, std::string_view /*regime*/,
              std::string_view /*referencia*/, std::string_view /*referencia_inicial*/) override {
    return false;
  }
};

struct NoWriter final : Gravador {
  [[nodiscard]] bool LeCampos() const override { return false; }
  void CaminhoBase(std::string_view /*caminho*/) override {}
  void Campo(std::string_view /*nome*/, std::string_view /*texto*/) override {}
  void Gravar() override {}
};

}  // namespace

int BareHost::MsgBox(std::string_view /*text*/, int style, std::string_view /*title*/) {
  return (style & estilo::kSimNao) != 0 ? resposta::kNao : resposta::kOk;
}

bool BareHost::Exists(std::string_view /*path*/) { return false; }
void BareHost::Delete(std::string_view /*path*/) { throw RuntimeError(erro::kArquivoNaoEncontrado); }
void BareHost::Rename(std::string_view /*from*/, std::string_view /*to*/) {
  throw RuntimeError(erro::kArquivoNaoEncontrado);
}
void BareHost::Open(int /*number*/, std::string_view /*path*/) {
  throw RuntimeError(erro::kArquivoNaoEncontrado);
}
std::size_t BareHost::Read(int /*number*/, char* /*buffer*/, std::size_t /*count*/) {
  throw RuntimeError(erro::kNumeroDeArquivoInvalido);
}

std::string BareHost::GetSetting(std::string_view /*application*/, std::string_view /*section*/,
                                 std::string_view /*key*/, std::string_view fallback) {
  return std::string(fallback);
}

std::unique_ptr<BancoTemporario> BareHost::CriarBancoTemporario() { return std::make_unique<NoDatabase>(); }
std::unique_ptr<ConsultaDeclaracoes> BareHost::CriarConsultaDeclaracoes() {
  return std::make_unique<NothingHeld>();
}
std::unique_ptr<ValidadorDocumentos> BareHost::CriarValidadorDocumentos() {
  return std::make_unique<ValidadorDocumentosLocal>();
}
std::unique_ptr<Gravador> BareHost::CriarGravador(Kind /*registro*/) { return std::make_unique<NoWriter>(); }

}  // namespace tremvik
