#include "cli/commands.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <system_error>

#include "adapters/sqlite/reference_tables.h"
#include "cli/file_names.h"
#include "cli/importer.h"
#include "cli/listing.h"
#include "cli/many_files.h"
#include "runtime/text.h"
#include "text/readable.h"

namespace tremvik::cli {
namespace {

RunOptions OptionsOf(const Request& request, Modo modo) {
  return {.modo = modo,
          .pasta = request.pasta,
          .responder = request.responder,
          .json = request.json,
          .many = false};
}

ExitStatus Validate(const Request& request, const Terminal& terminal, Output& out, Output& err) {
  RunOptions options = OptionsOf(request, Modo::kValidar);
  const bool from_input = std::ranges::find(request.arquivos, "-") != request.arquivos.end();
  if (!from_input && request.arquivos.size() == 1) {
    return Importer(options, terminal, out, err).Run(request.arquivos.front());
  }
  options.many = true;
  unsigned workers = request.paralelo;
  if (!from_input) workers = std::min(workers, static_cast<unsigned>(request.arquivos.size()));
  FileNames names(request.arquivos, request.nulo ? '\0' : '\n');
  return ValidateMany(names, options, terminal, workers, out, err);
}

// The master record of a "Pré-Formatado" file, which is digits alone.
bool IsSample(const std::string& path) {
  constexpr std::size_t kMaster = 30;
  std::string start(kMaster, '\0');
  std::ifstream(path, std::ios::binary).read(start.data(), kMaster);
  return start.starts_with("01") && std::ranges::all_of(start, IsDigit);
}

// Why the file to write must stay as it is; empty when it may be written.
std::string ReasonToKeep(const Request& request) {
  std::error_code ignored;
  const std::string& path = request.saida;
  if (!std::filesystem::is_regular_file(path, ignored)) return {};
  if (!request.sobrescrever) return "já existe. Escolha outro nome ou use --sobrescrever.";
  if (std::filesystem::file_size(path, ignored) == 0 || IsSample(path)) return {};
  return "já existe e não é um arquivo Pré-Formatado; não será sobrescrito. Escolha outro nome.";
}

ExitStatus WriteSample(const Request& request, Output& out, Output& err) {
  std::string bytes;
  try {
    bytes = sample::Generate(request.exemplo);
  } catch (const std::invalid_argument& error) {
    err.Write("tremvik: " + std::string(error.what()) + "\n");
    return ExitStatus::kEnvironment;
  }
  if (request.saida.empty() || request.saida == "-") {
    out.Write(bytes);
    return ExitStatus::kAccepted;
  }
  if (const std::string reason = ReasonToKeep(request); !reason.empty()) {
    err.Write(fmt::format("tremvik: {} {}\n", text::InQuotes(request.saida), reason));
    return ExitStatus::kEnvironment;
  }
  const int descriptor = open(request.saida.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  int error = descriptor < 0 ? errno : 0;
  if (descriptor >= 0) {
    Output file(descriptor);
    file.Write(bytes);
    file.Flush();
    error = file.error();
    if (close(descriptor) != 0 && error == 0) error = errno;
  }
  if (error == 0) return ExitStatus::kAccepted;
  err.Write("tremvik: não foi possível escrever em \"" + text::Visible(request.saida) + "\" (" +
            SystemError(error) +
            "). Confira a pasta e as permissões, ou escolha outro arquivo com --saida.\n");
  return ExitStatus::kEnvironment;
}

void WriteProblems(const std::vector<std::string>& problems, Output& out) {
  for (const auto& problem : problems)
    out.Write(text::Visible(problem) + "\n");
  out.Write(text::Count(problems.size(), "problema", "problemas") + ".\n");
}

ExitStatus BuildTables(const Request& request, Output& out, Output& err) {
  const std::string& file = request.arquivos.front();
  std::error_code ignored;
  if (!request.dados.empty() && !std::filesystem::is_directory(request.dados, ignored)) {
    err.Write("tremvik: a pasta \"" + text::Visible(request.dados) +
              "\" não existe ou não pode ser lida. Confira --dados.\n");
    return ExitStatus::kEnvironment;
  }
  if (request.dados.empty()) {
    ConstruirTabelasPadrao(file);
  } else if (const auto problems = ConstruirTabelas(request.dados, file); !problems.empty()) {
    WriteProblems(problems, out);
    out.Write("Nada foi escrito em \"" + text::Visible(file) + "\".\n");
    return ExitStatus::kRefused;
  }
  out.Write("Tabelas construídas em \"" + text::Visible(file) + "\".\n");
  return ExitStatus::kAccepted;
}

ExitStatus CheckTables(const Request& request, Output& out) {
  const auto problems = VerificarTabelas(request.arquivos.front());
  if (problems.empty()) {
    out.Write("As tabelas de \"" + text::Visible(request.arquivos.front()) + "\" estão completas.\n");
    return ExitStatus::kAccepted;
  }
  WriteProblems(problems, out);
  return ExitStatus::kRefused;
}

ExitStatus Dispatch(const Request& request, const Terminal& terminal, Output& out, Output& err) {
  switch (request.verb) {
    case Verb::kImportar:
      return Importer(OptionsOf(request, Modo::kImportar), terminal, out, err).Run(request.arquivos.front());
    case Verb::kValidar:
      return Validate(request, terminal, out, err);
    case Verb::kListar:
      return List(request, terminal, out, err);
    case Verb::kExemplo:
      return WriteSample(request, out, err);
    case Verb::kConstruirTabelas:
      return BuildTables(request, out, err);
    case Verb::kVerificarTabelas:
      return CheckTables(request, out);
  }
  return ExitStatus::kFailure;
}

// The sentence of an error outside any run: about the tables' file for the verbs of the tables, else about
// the folder.
std::string Sentence(const RuntimeError& error, const Request& request) {
  const bool tables = request.verb == Verb::kConstruirTabelas || request.verb == Verb::kVerificarTabelas;
  if (request.verb == Verb::kListar) return Remedy(error, request.pasta, Database::kStore);
  if (!tables) return Remedy(error, request.pasta);
  const std::string name = text::InQuotes(request.arquivos.front());
  if (request.verb == Verb::kVerificarTabelas) {
    return fmt::format(
        "não foi possível ler as tabelas de {}{}. Confira o nome, ou construa-as com "
        "\"tremvik tabelas construir\".",
        name, InWords(error));
  }
  switch (error.number()) {
    case erro::kMemoriaInsuficiente:
    case erro::kArgumentoInvalido:
      return Remedy(error, request.pasta);
    case erro::kDiscoCheio:
      return fmt::format("o disco de {} está cheio{}. Libere espaço e tente de novo.", name, InWords(error));
    case erro::kArquivoJaExiste:
      return fmt::format(
          "{} já existe e não é um banco de tabelas de referência (erro {}). Apague-o ou escolha outro nome.",
          name, error.number());
    default:
      break;
  }
  return fmt::format(
      "não foi possível escrever as tabelas em {}{}. Confira se a pasta existe e se você pode gravar nela.",
      name, InWords(error));
}

}  // namespace

ExitStatus Execute(const Request& request, const Terminal& terminal, Output& out, Output& err) {
  if (!request.pasta.empty()) {
    if (const std::string problem = ProblemOfFolder(request.pasta); !problem.empty()) {
      err.Write("tremvik: " + problem + "\n");
      return ExitStatus::kEnvironment;
    }
  }
  try {
    return Dispatch(request, terminal, out, err);
  } catch (const RuntimeError& error) {
    out.Flush();
    err.Write("tremvik: " + Sentence(error, request) + "\n");
    return MeaningOf(error.number()) == ExitStatus::kFailure ? ExitStatus::kFailure
                                                             : ExitStatus::kEnvironment;
  }
}

}  // namespace tremvik::cli
