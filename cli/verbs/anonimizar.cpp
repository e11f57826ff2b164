#include <fmt/format.h>

#include <filesystem>
#include <system_error>

#include "adapters/local/replacement.h"
#include "adapters/local/system.h"
#include "anonymizer/anonymizer.h"
#include "cli/verb_options.h"
#include "cli/verbs/verbs.h"
#include "text/readable.h"

namespace tremvik::cli {
namespace {

constexpr std::size_t kMostBytes = 64UL * 1024 * 1024;  // four times the largest file that can be accepted

class Anonimizar final : public Verb {
 public:
  [[nodiscard]] VerbTexts Texts() const override {
    return {"anonimizar", "Troca IE, CNPJ, chaves e valores de um arquivo",
            "Exemplos:\n"
            "  tremvik anonimizar marco.txt --saida marco-anonimo.txt\n"
            "  tremvik anonimizar marco.txt --semente 7 --saida marco-anonimo.txt\n\n"
            "O arquivo novo é aceito ou recusado como o primeiro, pelas mesmas regras nos\n"
            "mesmos lugares. Dos textos livres (FLegal e Ocorrência) ficam só os brancos e\n"
            "os sinais; períodos, CFOP, subitens, datas e quantidades ficam como estão. O\n"
            "sorteio é outro a cada vez, a não ser com --semente."};
  }

  void Declare(VerbOptions& options) override {
    options.Argument("ARQUIVO", arquivo_, "Arquivo Pré-Formatado", true);
    options.Text("--saida", saida_, "OUTRO", "Arquivo a gravar; sem esta opção, a saída padrão");
    options.Number<std::uint64_t>("--semente", semente_, 0, UINT64_MAX, "S",
                                  "Semente do sorteio: a mesma dá o mesmo arquivo");
    options.Flag("--sobrescrever", sobrescrever_, "Substitui o arquivo de --saida, se já existir");
  }

  [[nodiscard]] ExitStatus Execute(const Terminal& terminal, Output& out, Output& err) override;
  [[nodiscard]] std::string Sentence(const RuntimeError& error) const override {
    return fmt::format(
        "não foi possível escrever em {}{}. Confira a pasta e as permissões, ou escolha outro nome.",
        text::InQuotes(saida_), InWords(error));
  }

 private:
  [[nodiscard]] std::string Complaints(const std::optional<std::string>& bytes) const;

  std::string arquivo_;
  std::string saida_;  ///< file to write; empty or "-" for standard output
  std::uint64_t semente_ = anonymizer::AnySeed();
  bool sobrescrever_ = false;
};

// What keeps the work from being done, with what to do; empty for nothing.
std::string Anonimizar::Complaints(const std::optional<std::string>& bytes) const {
  std::error_code ignored;
  if (!bytes) {
    const std::string problem = ProblemOfFile(arquivo_);
    return problem.empty() ? text::InQuotes(arquivo_) + " não pode ser lido. Confira o nome." : problem;
  }
  if (saida_.empty() || saida_ == "-" || !std::filesystem::exists(saida_, ignored)) return {};
  if (std::filesystem::equivalent(arquivo_, saida_, ignored))
    return text::InQuotes(saida_) + " é o próprio arquivo. Escolha outro nome com --saida.";
  if (!sobrescrever_) return text::InQuotes(saida_) + " já existe. Escolha outro nome ou use --sobrescrever.";
  return {};
}

ExitStatus Anonimizar::Execute(const Terminal& /*terminal*/, Output& out, Output& err) {
  const auto bytes = ReadRegularFile(arquivo_, kMostBytes);
  std::string complaint = Complaints(bytes);
  if (complaint.empty()) {
    const anonymizer::Anonymized other = anonymizer::Anonymize(*bytes, semente_);
    if (!other.known) {
      complaint =
          text::InQuotes(arquivo_) + " não é um arquivo Pré-Formatado: não se sabe o que trocar nele.";
    } else if (saida_.empty() || saida_ == "-") {
      out.Write(other.bytes);
    } else {
      ReplaceFile(saida_, other.bytes);
    }
  }
  if (complaint.empty()) return ExitStatus::kAccepted;
  err.Write("tremvik: " + complaint + "\n");
  return ExitStatus::kEnvironment;
}

}  // namespace

std::unique_ptr<Verb> MakeAnonimizar() { return std::make_unique<Anonimizar>(); }

}  // namespace tremvik::cli
