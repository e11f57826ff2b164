#include "cli/commands.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <stdexcept>
#include <system_error>

#include "adapters/sqlite/reference_tables.h"
#include "cli/file_names.h"
#include "cli/importer.h"
#include "cli/listing.h"
#include "cli/many_files.h"
#include "cli/text.h"

namespace tremvik::cli {
namespace {

RunOptions OptionsOf(const Pedido& pedido, Modo modo) {
  return {
      .modo = modo, .pasta = pedido.pasta, .responder = pedido.responder, .json = pedido.json, .many = false};
}

Saida Validate(const Pedido& pedido, const Terminal& terminal, Output& out, Output& err) {
  RunOptions options = OptionsOf(pedido, Modo::kValidar);
  const bool from_input = std::ranges::find(pedido.arquivos, "-") != pedido.arquivos.end();
  if (!from_input && pedido.arquivos.size() == 1) {
    return Importer(options, terminal, out, err).Run(pedido.arquivos.front());
  }
  options.many = true;
  unsigned workers = pedido.paralelo;
  if (!from_input) workers = std::min(workers, static_cast<unsigned>(pedido.arquivos.size()));
  FileNames names(pedido.arquivos);
  return ValidateMany(names, options, terminal, workers, out, err);
}

Saida WriteSample(const Pedido& pedido, Output& out, Output& err) {
  std::string bytes;
  try {
    bytes = sample::Gerar(pedido.exemplo);
  } catch (const std::invalid_argument& error) {
    err.Write("tremvik: " + std::string(error.what()) + "\n");
    return Saida::kAmbiente;
  }
  if (pedido.saida.empty() || pedido.saida == "-") {
    out.Write(bytes);
    return Saida::kAceito;
  }
  const int descriptor = open(pedido.saida.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  int error = descriptor < 0 ? errno : 0;
  if (descriptor >= 0) {
    Output file(descriptor);
    file.Write(bytes);
    file.Flush();
    error = file.error();
    if (close(descriptor) != 0 && error == 0) error = errno;
  }
  if (error == 0) return Saida::kAceito;
  err.Write("tremvik: não foi possível escrever em \"" + Visible(pedido.saida) + "\" (" + SystemError(error) +
            "). Confira a pasta e as permissões, ou escolha outro arquivo com --saida.\n");
  return Saida::kAmbiente;
}

void WriteProblems(const std::vector<std::string>& problems, Output& out) {
  for (const auto& problem : problems)
    out.Write(Visible(problem) + "\n");
  out.Write(Count(problems.size(), "problema", "problemas") + ".\n");
}

Saida BuildTables(const Pedido& pedido, Output& out, Output& err) {
  const std::string& file = pedido.arquivos.front();
  std::error_code ignored;
  if (!pedido.dados.empty() && !std::filesystem::is_directory(pedido.dados, ignored)) {
    err.Write("tremvik: a pasta \"" + Visible(pedido.dados) +
              "\" não existe ou não pode ser lida. Confira --dados.\n");
    return Saida::kAmbiente;
  }
  if (pedido.dados.empty()) {
    ConstruirTabelasPadrao(file);
  } else if (const auto problems = ConstruirTabelas(pedido.dados, file); !problems.empty()) {
    WriteProblems(problems, out);
    out.Write("Nada foi escrito em \"" + Visible(file) + "\".\n");
    return Saida::kRecusado;
  }
  out.Write("Tabelas construídas em \"" + Visible(file) + "\".\n");
  return Saida::kAceito;
}

Saida CheckTables(const Pedido& pedido, Output& out) {
  const auto problems = VerificarTabelas(pedido.arquivos.front());
  if (problems.empty()) {
    out.Write("As tabelas de \"" + Visible(pedido.arquivos.front()) + "\" estão completas.\n");
    return Saida::kAceito;
  }
  WriteProblems(problems, out);
  return Saida::kRecusado;
}

Saida Dispatch(const Pedido& pedido, const Terminal& terminal, Output& out, Output& err) {
  switch (pedido.verbo) {
    case Verbo::kImportar:
      return Importer(OptionsOf(pedido, Modo::kImportar), terminal, out, err).Run(pedido.arquivos.front());
    case Verbo::kValidar:
      return Validate(pedido, terminal, out, err);
    case Verbo::kListar:
      return List(pedido, terminal, out, err);
    case Verbo::kExemplo:
      return WriteSample(pedido, out, err);
    case Verbo::kConstruirTabelas:
      return BuildTables(pedido, out, err);
    case Verbo::kVerificarTabelas:
      return CheckTables(pedido, out);
  }
  return Saida::kFalha;
}

// The sentence of an error outside any run: about the tables' file for the verbs of the tables, else about
// the folder.
std::string Sentence(const RuntimeError& error, const Pedido& pedido) {
  const bool tables = pedido.verbo == Verbo::kConstruirTabelas || pedido.verbo == Verbo::kVerificarTabelas;
  if (!tables) return Remedy(error, pedido.pasta);
  const std::string name = "\"" + Visible(pedido.arquivos.front()) + "\"";
  const std::string what =
      " (erro " + std::to_string(error.number()) + ": " + Visible(error.description()) + ")";
  if (pedido.verbo == Verbo::kVerificarTabelas) {
    return "não foi possível ler as tabelas de " + name + what +
           ". Confira o nome, ou construa-as com \"tremvik "
           "tabelas construir\".";
  }
  return "não foi possível escrever as tabelas em " + name + what +
         ". Confira se a pasta existe e se você pode "
         "gravar nela.";
}

}  // namespace

Saida Execute(const Pedido& pedido, const Terminal& terminal, Output& out, Output& err) {
  std::error_code ignored;
  if (std::filesystem::exists(pedido.pasta, ignored) &&
      !std::filesystem::is_directory(pedido.pasta, ignored)) {
    err.Write("tremvik: \"" + Visible(pedido.pasta) + "\" não é uma pasta. Escolha outra com --pasta.\n");
    return Saida::kAmbiente;
  }
  try {
    return Dispatch(pedido, terminal, out, err);
  } catch (const RuntimeError& error) {
    out.Flush();
    err.Write("tremvik: " + Sentence(error, pedido) + "\n");
    return MeaningOf(error.number()) == Saida::kFalha ? Saida::kFalha : Saida::kAmbiente;
  }
}

}  // namespace tremvik::cli
