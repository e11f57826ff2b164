#include "cli/environment.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "adapters/local/component_folder.h"
#include "adapters/sqlite/connection.h"
#include "adapters/sqlite/declaration_store.h"
#include "cli/text.h"

namespace tremvik::cli {

namespace {

// Raised by the store when it came to hold a declaration that is being moved into it.
constexpr int kJaGuardada = 3022;

// True when the words of `error` name that file of the folder.
bool Names(const RuntimeError& error, std::string_view file) {
  return error.description().find(file) != std::string::npos;
}

}  // namespace

ExitStatus MeaningOf(int error) {
  switch (error) {
    case erro::kEstouro:
    case erro::kTiposIncompativeis:
    case erro::kFimDoArquivo:
      return ExitStatus::kRefused;
    case erro::kArgumentoInvalido:
      return ExitStatus::kFailure;
    default:
      return ExitStatus::kEnvironment;
  }
}

std::string ProblemOfFile(const std::string& path) {
  const std::string name = "\"" + Visible(path) + "\"";
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) {
    if (errno == ELOOP)
      return name + " é um atalho (link simbólico) que leva a si mesmo. Informe o próprio arquivo.";
    if (errno == EACCES) return "sem permissão para chegar a " + name + ". Confira as permissões das pastas.";
    return "o arquivo " + name + " não existe. Confira o nome e a pasta.";
  }
  if (S_ISDIR(status.st_mode)) return name + " é uma pasta. Informe o arquivo Pré-Formatado que está nela.";
  if (!S_ISREG(status.st_mode)) {
    return name + " não é um arquivo comum. Grave o conteúdo em um arquivo e informe o nome dele.";
  }
  if (access(path.c_str(), R_OK) != 0) {
    return "sem permissão para ler " + name +
           ". Ajuste as permissões do arquivo ou use um usuário que possa lê-lo.";
  }
  return {};
}

std::string Remedy(const RuntimeError& error, const std::string& folder) {
  const std::string name = "\"" + Visible(folder) + "\"";
  const std::string what =
      " (erro " + std::to_string(error.number()) + ": " + Visible(error.description()) + ")";
  switch (error.number()) {
    case erro::kArgumentoInvalido:
      return "o programa falhou" + what + ". Avise quem o mantém e, se puder, envie o arquivo.";
    case kJaGuardada:
      return "outra importação guardou enquanto isso uma das declarações deste arquivo" + what +
             ". Importe-o de novo para ver qual.";
    case erro::kMemoriaInsuficiente:
      return "a memória não bastou" + what + ". Feche outros programas e tente de novo.";
    case erro::kDiscoCheio:
      return "o disco da pasta " + name + " está cheio" + what + ". Libere espaço e tente de novo.";
    case erro::kBancoEmUso:
      if (Names(error, arquivo::kTabelasFixas) || Names(error, arquivo::kDeclaracoes)) {
        return "um banco de dados da pasta " + name + " está em uso por outro programa" + what +
               ". Feche-o nesse programa e tente de novo.";
      }
      return "a pasta " + name + " está em uso por outra importação" + what +
             ". Espere que ela termine ou use outra pasta com --pasta.";
    case sqlite::kVersaoMaisNova:
      return "as declarações guardadas na pasta " + name + " não podem ser lidas" + what +
             ". Atualize o programa ou use outra pasta com --pasta.";
    case erro::kBancoNaoEncontrado:
    case erro::kParametrosInsuficientes:
    case erro::kSintaxeDaConsulta:
    case erro::kTabelaNaoEncontrada:
    case erro::kFormatoDesconhecido:
      if (Names(error, arquivo::kDeclaracoes)) {
        return "as declarações guardadas na pasta " + name + " não podem ser lidas" + what +
               ". Ponha de volta uma cópia de segurança desse arquivo ou use outra pasta com --pasta.";
      }
      return "um banco de dados da pasta " + name + " falta, está danificado ou é de outra versão" + what +
             ". Confira as tabelas com \"tremvik tabelas verificar\" e refaça-as com \"tremvik tabelas construir\".";
    case erro::kCaminhoNaoEncontrado:
    case erro::kAcessoAoCaminho:
    case erro::kPermissaoNegada:
    case erro::kArquivoNaoEncontrado:
    case erro::kArquivoJaExiste:
    case erro::kNumeroDeArquivoInvalido:
      return "não foi possível usar a pasta " + name + what +
             ". Confira se ela existe e se você pode gravar nela, ou escolha outra com --pasta.";
    default:
      return "algo falhou na máquina" + what + ". Corrija a causa e tente de novo.";
  }
}

}  // namespace tremvik::cli
