#include "cli/environment.h"

#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "adapters/local/component_folder.h"
#include "adapters/sqlite/connection.h"
#include "adapters/sqlite/declaration_store.h"
#include "adapters/sqlite/reference_tables.h"
#include "cli/terminal.h"
#include "runtime/text.h"
#include "text/readable.h"

namespace tremvik::cli {

namespace {

// Raised by the store when it came to hold a declaration that is being moved into it.
constexpr int kJaGuardada = 3022;

// True when the words of `error` name that file of the folder.
bool Names(const RuntimeError& error, std::string_view file) {
  return error.description().find(file) != std::string::npos;
}

bool TablesAreSound(const std::string& folder) {
  try {
    return VerificarTabelas(ComponentFolder(folder).File(arquivo::kTabelasFixas)).empty();
  } catch (const RuntimeError&) {
    return false;
  }
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
  const std::string name = text::InQuotes(path);
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) {
    if (errno == ENOENT) return fmt::format("o arquivo {} não existe. Confira o nome e a pasta.", name);
    return fmt::format("não foi possível chegar a {} ({}). Confira o nome e a pasta.", name,
                       SystemError(errno));
  }
  if (S_ISDIR(status.st_mode))
    return fmt::format("{} é uma pasta. Informe o arquivo Pré-Formatado que está nela.", name);
  if (!S_ISREG(status.st_mode)) {
    return fmt::format("{} não é um arquivo comum. Grave o conteúdo em um arquivo e informe o nome dele.",
                       name);
  }
  if (access(path.c_str(), R_OK) != 0) {
    return fmt::format(
        "sem permissão para ler {}. Ajuste as permissões do arquivo ou use um usuário que possa lê-lo.",
        name);
  }
  return {};
}

bool BeginsLikeInput(const std::string& path) {
  constexpr std::size_t kMaster = 30;
  std::string start(kMaster, '\0');
  std::ifstream(path, std::ios::binary).read(start.data(), kMaster);
  return (start.starts_with("01") || start.starts_with("05")) && std::ranges::all_of(start, IsDigit);
}

std::string ProblemOfFolder(const std::string& path) {
  struct stat status {};
  const int error = stat(path.c_str(), &status) == 0 ? 0 : errno;
  if (error == 0 && S_ISDIR(status.st_mode)) return {};
  if (error == 0) return fmt::format("{} não é uma pasta. Escolha outra com --pasta.", text::InQuotes(path));
  std::error_code code;
  if (!path.starts_with('/') && std::filesystem::current_path(code).empty()) {
    return fmt::format("a pasta de trabalho não existe mais, e {} ficaria nela. Vá para outra pasta com cd.",
                       text::InQuotes(path));
  }
  if (error == ENOENT || error == ENOTDIR) return {};  // who needs it makes it or says that it cannot be made
  return fmt::format("não foi possível usar a pasta {} ({}). Escolha outra com --pasta.",
                     text::InQuotes(path), SystemError(error));
}

std::string InWords(const RuntimeError& error) {
  std::string_view words = error.description();
  if (words.ends_with('.')) words.remove_suffix(1);
  return fmt::format(" (erro {}: {})", error.number(), text::Visible(words));
}

std::string Remedy(const RuntimeError& error, const std::string& folder, Database database) {
  const std::string name = text::InQuotes(folder);
  const std::string what = InWords(error);
  switch (error.number()) {
    case erro::kArgumentoInvalido:
      return fmt::format("o programa falhou{}. Avise quem o mantém e, se puder, envie o arquivo.", what);
    case kJaGuardada:
      return fmt::format(
          "outra importação guardou enquanto isso uma das declarações deste arquivo{}. "
          "Importe-o de novo para ver qual.",
          what);
    case erro::kMemoriaInsuficiente:
      return fmt::format("a memória não bastou{}. Feche outros programas e tente de novo.", what);
    case erro::kDiscoCheio:
      return fmt::format("o disco da pasta {} está cheio{}. Libere espaço e tente de novo.", name, what);
    case erro::kBancoEmUso:
      if (Names(error, arquivo::kTabelasFixas) || Names(error, arquivo::kDeclaracoes)) {
        return fmt::format(
            "um banco de dados da pasta {} está em uso por outro programa{}. "
            "Feche-o nesse programa e tente de novo.",
            name, what);
      }
      return fmt::format(
          "a pasta {} está em uso por outra importação (erro {}). "
          "Espere que ela termine ou use outra pasta com --pasta.",
          name, error.number());
    case sqlite::kNewerVersion:
      return fmt::format(
          "as declarações na pasta {} foram guardadas por uma versão mais nova (erro {}). "
          "Atualize o programa ou use outra pasta com --pasta.",
          name, error.number());
    case erro::kBancoNaoEncontrado:
    case erro::kParametrosInsuficientes:
    case erro::kSintaxeDaConsulta:
    case erro::kTabelaNaoEncontrada:
    case erro::kFormatoDesconhecido:
      if (database == Database::kStore || TablesAreSound(folder)) {
        return fmt::format(
            "as declarações guardadas na pasta {} não podem ser lidas{}. "
            "Ponha de volta uma cópia de segurança de tremvik.db ou use outra pasta com --pasta.",
            name, what);
      }
      return fmt::format(
          "as tabelas de referência da pasta {} faltam, estão danificadas ou são de outra versão{}. "
          "Confira-as com \"tremvik tabelas verificar\" e refaça-as com \"tremvik tabelas construir\".",
          name, what);
    case erro::kCaminhoNaoEncontrado:
    case erro::kAcessoAoCaminho:
    case erro::kPermissaoNegada:
    case erro::kArquivoNaoEncontrado:
    case erro::kArquivoJaExiste:
    case erro::kNumeroDeArquivoInvalido:
      return fmt::format(
          "não foi possível usar a pasta {}{}. "
          "Confira se ela existe e se você pode gravar nela, ou escolha outra com --pasta.",
          name, what);
    default:
      return fmt::format("algo falhou na máquina{}. Corrija a causa e tente de novo.", what);
  }
}

}  // namespace tremvik::cli
