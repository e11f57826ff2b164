#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <system_error>

#include "cli/verb_options.h"
#include "cli/verbs/verbs.h"
#include "runtime/text.h"
#include "sample/sample.h"
#include "text/readable.h"

namespace tremvik::cli {
namespace {

// The master record of a "Pré-Formatado" file, which is digits alone.
bool IsSample(const std::string& path) {
  constexpr std::size_t kMaster = 30;
  std::string start(kMaster, '\0');
  std::ifstream(path, std::ios::binary).read(start.data(), kMaster);
  return start.starts_with("01") && std::ranges::all_of(start, IsDigit);
}

class Exemplo final : public Verb {
 public:
  [[nodiscard]] VerbTexts Texts() const override {
    return {"exemplo", "Faz um arquivo válido com todos os tipos de registro",
            "Exemplos:\n"
            "  tremvik exemplo --saida exemplo.txt\n"
            "  tremvik exemplo --declaracoes 200 --semente 7 --saida grande.txt\n\n"
            "A mesma semente dá sempre o mesmo arquivo."};
  }

  void Declare(VerbOptions& options) override {
    options.Number("--declaracoes", exemplo_.declaracoes, 1, 9999, "N",
                   "Quantas declarações; o normal são doze");
    options.Number("--registros", exemplo_.registros, 1, 99'999, "N",
                   "Quantos registros (linhas) exatamente");
    options.Number<std::uint64_t>("--semente", exemplo_.seed, 0, UINT64_MAX, "S",
                                  "Semente do sorteio; o normal é 1");
    options.Flag("--duvida", exemplo_.duvida, "Com um imposto que faz a importação perguntar");
    options.Text("--saida", saida_, "ARQUIVO", "Arquivo a escrever; sem ela, a saída padrão");
    options.Flag("--sobrescrever", sobrescrever_, "Troca o arquivo de --saida se ele já existe");
  }

  [[nodiscard]] ExitStatus Execute(const Terminal& terminal, Output& out, Output& err) override;

 private:
  [[nodiscard]] std::string ReasonToKeep() const;

  sample::Options exemplo_;
  std::string saida_;          ///< file to write; empty for standard output
  bool sobrescrever_ = false;  ///< an earlier sample may be replaced
};

// Why the file to write must stay as it is; empty when it may be written.
std::string Exemplo::ReasonToKeep() const {
  std::error_code ignored;
  const std::string& path = saida_;
  if (!std::filesystem::is_regular_file(path, ignored)) return {};
  if (!sobrescrever_) return "já existe. Escolha outro nome ou use --sobrescrever.";
  if (std::filesystem::file_size(path, ignored) == 0 || IsSample(path)) return {};
  return "já existe e não é um arquivo Pré-Formatado; não será sobrescrito. Escolha outro nome.";
}

ExitStatus Exemplo::Execute(const Terminal& /*terminal*/, Output& out, Output& err) {
  std::string bytes;
  try {
    bytes = sample::Generate(exemplo_);
  } catch (const std::invalid_argument& error) {
    err.Write("tremvik: " + std::string(error.what()) + "\n");
    return ExitStatus::kEnvironment;
  }
  if (saida_.empty() || saida_ == "-") {
    out.Write(bytes);
    return ExitStatus::kAccepted;
  }
  if (const std::string reason = ReasonToKeep(); !reason.empty()) {
    err.Write(fmt::format("tremvik: {} {}\n", text::InQuotes(saida_), reason));
    return ExitStatus::kEnvironment;
  }
  const int descriptor = open(saida_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  int error = descriptor < 0 ? errno : 0;
  if (descriptor >= 0) {
    Output file(descriptor);
    file.Write(bytes);
    file.Flush();
    error = file.error();
    if (close(descriptor) != 0 && error == 0) error = errno;
  }
  if (error == 0) return ExitStatus::kAccepted;
  err.Write("tremvik: não foi possível escrever em \"" + text::Visible(saida_) + "\" (" + SystemError(error) +
            "). Confira a pasta e as permissões, ou escolha outro arquivo com --saida.\n");
  return ExitStatus::kEnvironment;
}

}  // namespace

std::unique_ptr<Verb> MakeExemplo() { return std::make_unique<Exemplo>(); }

}  // namespace tremvik::cli
