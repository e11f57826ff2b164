#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <system_error>

#include "cli/rule_kit.h"
#include "cli/verb_options.h"
#include "cli/verbs/verbs.h"
#include "report/search.h"
#include "sample/rule_examples.h"
#include "sample/sample.h"
#include "text/readable.h"

namespace tremvik::cli {
namespace {

constexpr std::size_t kStart = 30;  // characters by which a sample is known

std::string StartOf(const std::string& path) {
  std::string start(kStart, '\0');
  std::ifstream(path, std::ios::binary).read(start.data(), kStart);
  return start;
}

// Why the file at `path` must stay as it is; empty when `bytes` may be written there. What may be replaced is
// an earlier sample, or what begins as `bytes` do.
std::string ReasonToKeep(const std::string& path, const std::string& bytes, bool sobrescrever) {
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(path, ignored)) return {};
  const std::string name = text::InQuotes(path);
  if (!sobrescrever) return name + " já existe. Escolha outro nome ou use --sobrescrever.";
  if (std::filesystem::file_size(path, ignored) == 0 || BeginsLikeInput(path)) return {};
  if (bytes.size() >= kStart && bytes.starts_with(StartOf(path))) return {};
  return name + " já existe e não é um arquivo de exemplo; não será sobrescrito. Escolha outro nome.";
}

// Writes the file; the answer is what went wrong, empty for nothing.
std::string WriteFile(const std::string& path, const std::string& bytes) {
  const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  int error = descriptor < 0 ? errno : 0;
  if (descriptor >= 0) {
    Output file(descriptor);
    file.Write(bytes);
    file.Flush();
    error = file.error();
    if (close(descriptor) != 0 && error == 0) error = errno;
  }
  if (error == 0) return {};
  return fmt::format(
      "não foi possível escrever em {} ({}). Confira a pasta e as permissões, ou escolha outro nome.",
      text::InQuotes(path), SystemError(error));
}

class Exemplo final : public Verb {
 public:
  [[nodiscard]] VerbTexts Texts() const override {
    return {"exemplo", "Gera um arquivo válido, ou um que quebra a regra pedida",
            "Exemplos:\n"
            "  tremvik exemplo --saida exemplo.txt\n"
            "  tremvik exemplo --declaracoes 200 --semente 7 --saida grande.txt\n"
            "  tremvik exemplo --regra CR10-11 --saida errado.txt\n"
            "  tremvik exemplo --todas-as-regras errados/\n\n"
            "O arquivo válido tem todos os tipos de registro; a mesma semente dá sempre o\n"
            "mesmo. O de uma regra é pequeno e só tem essa falta; com os de todas as regras\n"
            "vai esperado.json, que diz o que a importação responde a cada um."};
  }

  void Declare(VerbOptions& options) override {
    options.Number("--declaracoes", exemplo_.declaracoes, 1, 9999, "N",
                   "Quantas declarações; o padrão são doze");
    options.Number("--registros", exemplo_.registros, 1, 99'999, "N",
                   "Quantos registros (linhas) exatamente");
    options.Number<std::uint64_t>("--semente", exemplo_.seed, 0, UINT64_MAX, "S",
                                  "Semente do sorteio; o padrão é 1");
    options.Flag("--duvida", exemplo_.duvida, "Com um imposto que leva a importação a perguntar");
    options.Text("--regra", regra_, "REGRA", "Um arquivo que quebra só esta regra (CR10-11)");
    options.Text("--todas-as-regras", regras_em_, "PASTA", "Um arquivo para cada regra, nesta pasta");
    options.Text("--saida", saida_, "ARQUIVO", "Arquivo a gravar; sem esta opção, a saída padrão");
    options.Flag("--sobrescrever", sobrescrever_, "Troca arquivos de exemplo que já existem");
  }

  [[nodiscard]] std::string Complaint() override;
  [[nodiscard]] ExitStatus Execute(const Terminal& terminal, Output& out, Output& err) override;

 private:
  // Each answers what is wrong, with what to do; nothing when it is done.
  [[nodiscard]] std::string Make(std::string& bytes) const;
  [[nodiscard]] std::string WriteOne(Output& out) const;
  [[nodiscard]] std::string WriteKit(Output& out) const;

  sample::Options exemplo_;
  std::string regra_;          ///< the rule to break; empty for a valid file
  std::string regras_em_;      ///< the folder for all rules' files; empty for one file
  std::string saida_;          ///< file to write; empty for standard output
  bool sobrescrever_ = false;  ///< earlier samples may be replaced
};

std::string Exemplo::Complaint() {
  if (regra_.empty() && regras_em_.empty()) return {};
  if (!(exemplo_ == sample::Options{})) {
    return "os arquivos das regras são sempre os mesmos: retire as opções de sorteio";
  }
  if (!regra_.empty() && !regras_em_.empty()) return "use --regra ou --todas-as-regras, não as duas";
  if (!regras_em_.empty() && !saida_.empty()) return "--todas-as-regras já diz a pasta: retire --saida";
  return {};
}

std::string Exemplo::Make(std::string& bytes) const {
  if (regra_.empty()) {
    try {
      bytes = sample::Generate(exemplo_);
    } catch (const std::invalid_argument& error) {
      return error.what();
    }
    return {};
  }
  const std::string typed = report::CodeIn(regra_);
  const std::string codigo = typed.empty() ? regra_ : typed;
  const sample::RuleExample* const example = sample::FindRuleExample(codigo);
  if (example == nullptr) {
    return fmt::format("não há regra {}. Os códigos são como CR10-07, ARQ-03 ou ERR-6.",
                       text::InQuotes(regra_));
  }
  if (!example->motivo.empty()) {
    return fmt::format("nenhum arquivo quebra a regra {}. {}", codigo, example->motivo);
  }
  bytes = sample::Broken(*example);
  return {};
}

// All or, where one must stay as it is, none.
std::string Exemplo::WriteKit(Output& out) const {
  const auto kit = RuleKit();
  const auto path = [&](const std::string& name) {
    return (std::filesystem::path(regras_em_) / name).string();
  };
  for (const auto& [name, bytes] : kit) {
    if (std::string reason = ReasonToKeep(path(name), bytes, sobrescrever_); !reason.empty()) return reason;
  }
  std::error_code error;
  std::filesystem::create_directories(regras_em_, error);
  for (const auto& [name, bytes] : kit) {
    if (std::string problem = WriteFile(path(name), bytes); !problem.empty()) return problem;
  }
  out.Write(fmt::format("{} em {}.\n", text::Count(kit.size(), "arquivo escrito", "arquivos escritos"),
                        text::InQuotes(regras_em_)));
  return {};
}

std::string Exemplo::WriteOne(Output& out) const {
  std::string bytes;
  if (std::string problem = Make(bytes); !problem.empty()) return problem;
  if (saida_.empty() || saida_ == "-") {
    out.Write(bytes);
    return {};
  }
  if (std::string reason = ReasonToKeep(saida_, bytes, sobrescrever_); !reason.empty()) return reason;
  return WriteFile(saida_, bytes);
}

ExitStatus Exemplo::Execute(const Terminal& /*terminal*/, Output& out, Output& err) {
  const std::string problem = regras_em_.empty() ? WriteOne(out) : WriteKit(out);
  if (problem.empty()) return ExitStatus::kAccepted;
  err.Write("tremvik: " + problem + "\n");
  return ExitStatus::kEnvironment;
}

}  // namespace

std::unique_ptr<Verb> MakeExemplo() { return std::make_unique<Exemplo>(); }

}  // namespace tremvik::cli
