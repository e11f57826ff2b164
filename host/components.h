// The host program's own components, and their lifetime: made on first use, kept as long as the instance.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "host/application.h"
#include "host/record_kind.h"

namespace tremvik {

/// The host's manager of the temporary database. Operations raise the host's run-time errors.
struct BancoTemporario {
  virtual ~BancoTemporario() = default;
  /// Makes the empty "BDTemp.mdb" ready, before it is renamed.
  virtual void Preparar() = 0;
  /// Opens the temporary database at `caminho`; the result is the host's handle of it.
  virtual std::int16_t Abrir(std::string_view caminho) = 0;
  /// Ends the work on it, after a success or a fault; `caminho` may be empty.
  virtual void Encerrar(std::string_view caminho) = 0;
};

/// Answers whether the host already holds a declaration.
struct ConsultaDeclaracoes {
  virtual ~ConsultaDeclaracoes() = default;
  /// The temporary database of the run; set once, when the component is made.
  virtual void CaminhoBase(std::string_view caminho) = 0;
  /// `ie` in dotted form, `uf` the state, `regime` two digits, the dates "20/MM/AAAA"; `referencia_inicial`
  /// is empty where the declaration has none.
  virtual bool Existe(std::string_view ie, std::string_view uf, std::string_view regime,
                      std::string_view referencia, std::string_view referencia_inicial) = 0;
};

/// Tells whether the check digits of a registration number are right. True means valid.
struct ValidadorDocumentos {
  virtual ~ValidadorDocumentos() = default;
  virtual bool ValidarIE(std::string_view ie) = 0;      ///< 12 characters, UTF-8
  virtual bool ValidarCNPJ(std::string_view cnpj) = 0;  ///< 14 characters, UTF-8
  /// The number with its check digits made right, to tell beside a refusal; empty where they are not known.
  virtual std::string IECerta(std::string_view /*ie*/) { return {}; }
  virtual std::string CNPJCerto(std::string_view /*cnpj*/) { return {}; }
};

/// Stores the accepted records of one kind in the temporary database.
struct Gravador {
  virtual ~Gravador() = default;
  /// False of a writer that drops what it is given: its records are announced by `Gravar` alone. Their fields
  /// are not put into display form and `Campo` is not called, but a value that has no such form is the same
  /// error. Asked before each record.
  [[nodiscard]] virtual bool LeCampos() const { return true; }
  /// The temporary database's path; set once, when the writer is made.
  virtual void CaminhoBase(std::string_view caminho) = 0;
  /// One field of the record: its name and its text (UTF-8), valid during the call only.
  virtual void Campo(std::string_view nome, std::string_view texto) = 0;
  /// Stores the record made of the fields given since the last call.
  virtual void Gravar() = 0;
};

/// Makes the host's components. A component that cannot be made is run-time error 429.
struct ComponentFactory {
  virtual ~ComponentFactory() = default;
  virtual std::unique_ptr<BancoTemporario> CriarBancoTemporario() = 0;
  virtual std::unique_ptr<ConsultaDeclaracoes> CriarConsultaDeclaracoes() = 0;
  virtual std::unique_ptr<ValidadorDocumentos> CriarValidadorDocumentos() = 0;
  /// The writer of one of `kStoredKinds`.
  virtual std::unique_ptr<Gravador> CriarGravador(Kind registro) = 0;
};

/// The components of one instance: each is made on first use, given the temporary database's path where it
/// wants one, and kept.
class Components {
 public:
  /// `application` holds the temporary database's path; both must outlive this object.
  Components(ComponentFactory& factory, Application& application)
      : factory_(factory), application_(application) {}

  [[nodiscard]] BancoTemporario& banco();
  [[nodiscard]] ConsultaDeclaracoes& consulta();
  [[nodiscard]] ValidadorDocumentos& documentos();
  [[nodiscard]] Gravador& gravador(Kind registro);

 private:
  ComponentFactory& factory_;
  Application& application_;
  std::unique_ptr<BancoTemporario> banco_;
  std::unique_ptr<ConsultaDeclaracoes> consulta_;
  std::unique_ptr<ValidadorDocumentos> documentos_;
  ByKind<std::unique_ptr<Gravador>> gravadores_;
};

}  // namespace tremvik
