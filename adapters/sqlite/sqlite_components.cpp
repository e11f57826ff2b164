#include "adapters/sqlite/sqlite_components.h"

#include "adapters/local/documents.h"
#include "adapters/sqlite/table_writer.h"

namespace tremvik {
namespace {

class SqliteBanco final : public BancoTemporario {
 public:
  explicit SqliteBanco(TemporaryDatabase& temporario) : temporary_(temporario) {}
  void Preparar() override { temporary_.Preparar(); }
  std::int16_t Abrir(std::string_view caminho) override { return temporary_.Abrir(caminho); }
  void Encerrar(std::string_view /*caminho*/) override { temporary_.Encerrar(); }

 private:
  TemporaryDatabase& temporary_;
};

class Consulta final : public ConsultaDeclaracoes {
 public:
  explicit Consulta(Store& banco) : banco_(banco) {}
  void CaminhoBase(std::string_view /*caminho*/) override {}
  // A taxpayer has one declaration for a reference, whatever the regime and the first period it covers.
  bool Existe(std::string_view ie, std::string_view /*uf*/, std::string_view /*regime*/,
              std::string_view referencia, std::string_view /*referencia_inicial*/) override {
    if (referencia.size() != 10) throw RuntimeError(erro::kArgumentoInvalido);
    const std::string periodo =
        std::string(referencia.substr(6, 4)).append("-").append(referencia.substr(3, 2));
    return banco_.Holds(ie, periodo);
  }

 private:
  Store& banco_;
};

class BancoDescartado final : public BancoTemporario {
 public:
  explicit BancoDescartado(TemporaryNames& nomes) : nomes_(nomes) {}
  void Preparar() override { nomes_.Preparar(); }
  std::int16_t Abrir(std::string_view caminho) override {
    if (!nomes_.Exists(caminho)) throw RuntimeError(erro::kBancoNaoEncontrado);
    return 1;
  }
  void Encerrar(std::string_view /*caminho*/) override {}

 private:
  TemporaryNames& nomes_;
};

class GravadorDescartado final : public Gravador {
 public:
  [[nodiscard]] bool LeCampos() const override { return false; }
  void CaminhoBase(std::string_view /*caminho*/) override {}
  void Campo(std::string_view /*nome*/, std::string_view /*texto*/) override {}
  void Gravar() override {}
};

}  // namespace

std::unique_ptr<BancoTemporario> SqliteComponents::CriarBancoTemporario() {
  return std::make_unique<SqliteBanco>(temporary_);
}

std::unique_ptr<ConsultaDeclaracoes> SqliteComponents::CriarConsultaDeclaracoes() {
  return std::make_unique<Consulta>(banco_);
}

std::unique_ptr<ValidadorDocumentos> SqliteComponents::CriarValidadorDocumentos() {
  return std::make_unique<ValidadorDocumentosLocal>();
}

std::unique_ptr<Gravador> SqliteComponents::CriarGravador(Kind registro) {
  return std::make_unique<TableWriter>(temporary_, registro);
}

std::unique_ptr<BancoTemporario> DiscardingComponents::CriarBancoTemporario() {
  return std::make_unique<BancoDescartado>(nomes_);
}

std::unique_ptr<ConsultaDeclaracoes> DiscardingComponents::CriarConsultaDeclaracoes() {
  return std::make_unique<Consulta>(banco_);
}

std::unique_ptr<ValidadorDocumentos> DiscardingComponents::CriarValidadorDocumentos() {
  return std::make_unique<ValidadorDocumentosLocal>();
}

std::unique_ptr<Gravador> DiscardingComponents::CriarGravador(Kind /*registro*/) {
  return std::make_unique<GravadorDescartado>();
}

}  // namespace tremvik
