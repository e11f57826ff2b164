#include <algorithm>
#include <filesystem>
#include <limits>
#include <system_error>
#include <thread>

#include "anonymizer/anonymizer.h"
#include "cli/file_names.h"
#include "cli/importer.h"
#include "cli/many_files.h"
#include "cli/report_run.h"
#include "cli/verb_options.h"
#include "cli/verbs/verbs.h"
#include "text/readable.h"

namespace tremvik::cli {
namespace {

constexpr std::size_t kLimit = 100;
constexpr std::size_t kNoLimitGiven = std::numeric_limits<std::size_t>::max();

// "texto, conciso, json".
std::string FormatNames() {
  std::string names;
  for (const report::FormatInfo& format : report::Formats())
    names.append(names.empty() ? "" : ", ").append(format.nome);
  return names;
}

std::string FormatsHelp() {
  constexpr std::size_t kWidth = 52;  // of the help's second column
  std::string help;
  for (const std::string& line : text::Wrap("Relatório em um destes formatos: " + FormatNames(), kWidth))
    help.append(help.empty() ? "" : "\n").append(line);
  return help;
}

class Validar final : public Verb {
 public:
  [[nodiscard]] VerbTexts Texts() const override {
    return {"validar", "Valida arquivos como na importação, sem guardar nada",
            "Exemplos:\n"
            "  tremvik validar marco.txt\n"
            "  tremvik validar marco.txt --todos\n"
            "  tremvik validar entrada --padrao '*.txt' --todos --so-recusados\n"
            "  tremvik validar entrada/*.txt --todos --relatorio json --saida r.json\n"
            "  tremvik validar marco.txt --todos --relatorio html --mascarar --saida r.html\n"
            "  find entrada -name '*.txt' -print0 | tremvik validar -0 - --json\n\n"
            "Com vários arquivos, e em relatórios, nada é perguntado: sem --responder a\n"
            "resposta é Não. Os resultados saem na ordem dos nomes, e o código de saída é o\n"
            "do pior arquivo; com --linha-de-base só contam as inconsistências novas."};
  }

  void Declare(VerbOptions& options) override {
    options.Arguments(
        "ARQUIVO", arquivos_,
        "Arquivos Pré-Formatado, ou pastas com eles; - lê os nomes da entrada padrão, um por linha");
    options.Flag("--todos", exame_.todas, "Mostra todas as inconsistências, não só a primeira");
    options.Number<std::size_t>("--limite", limite_, 0, 1'000'000, "N",
                                "Quantas por arquivo, com --todos; o padrão é 100, e 0 todas");
    options.Judged(
        "--relatorio", [this](const std::string& name) { return Choose(name); }, "FORMATO",
        formats_help_.c_str());
    options.Text("--saida", saida_, "ARQUIVO", "Onde gravar o relatório; sem esta opção, a saída padrão");
    options.Flag("--mascarar", mascarar_, "Outras IE, CNPJ e valores no lugar dos do arquivo");
    options.Flag("--so-recusados", so_recusados_, "Dos arquivos aceitos só a contagem");
    options.Text("--padrao", padrao_, "MODELO", "Nas pastas, só os arquivos com nome assim: '*.txt'");
    options.Text("--linha-de-base", linha_de_base_, "ARQUIVO",
                 "As inconsistências que estão nele não contam mais");
    options.Text("--gravar-linha-de-base", gravar_linha_de_base_, "ARQUIVO",
                 "Grava nele as inconsistências de agora");
    options.Folder(pasta);
    options.Responder(responder_);
    options.Json(json_, "Escreve cada evento como uma linha JSON");
    options.Flag("-0,--nulo", nulo_, "Os nomes da entrada padrão são separados por NUL");
    options.Number("--paralelo", paralelo_, 1U, 256U, "N",
                   "Arquivos ao mesmo tempo; o padrão é um por núcleo");
  }

  [[nodiscard]] std::string Complaint() override {
    if (json_ && Reports()) return "--json não se combina com relatórios; o relatório é --relatorio json";
    if (limite_ != kNoLimitGiven && !exame_.todas) return "--limite pede --todos";
    return {};
  }

  ExitStatus Execute(const Terminal& terminal, Output& out, Output& err) override {
    FileNames names(arquivos_, nulo_ ? '\0' : '\n', padrao_);
    if (Reports()) return Report(names, terminal, out, err);
    RunOptions options{
        .modo = Modo::kValidar, .pasta = pasta, .responder = responder_, .json = json_, .many = false};
    if (names.IsOne()) return Importer(options, terminal, out, err).Run(arquivos_.front());
    options.many = true;
    return ValidateMany(names, options, so_recusados_, terminal, Workers(), out, err);
  }

 private:
  // Any of these asks for findings in a report, not for the run as it shows itself.
  [[nodiscard]] bool Reports() const {
    return exame_.todas || mascarar_ || formato_ != nullptr || !saida_.empty() || !linha_de_base_.empty() ||
           !gravar_linha_de_base_.empty();
  }
  std::string Choose(const std::string& name);
  [[nodiscard]] unsigned Workers() const;
  [[nodiscard]] std::string ReasonToKeep() const;
  ExitStatus Report(FileNames& names, const Terminal& terminal, Output& out, Output& err);

  std::vector<std::string> arquivos_;
  ExaminerOptions exame_;
  std::size_t limite_ = kNoLimitGiven;
  const report::FormatInfo* formato_ = nullptr;
  std::string formats_help_ = FormatsHelp();
  std::string saida_;
  bool mascarar_ = false;
  bool so_recusados_ = false;
  std::string padrao_;
  std::string linha_de_base_;
  std::string gravar_linha_de_base_;
  Answers responder_ = Answers::kAsk;
  bool json_ = false;
  bool nulo_ = false;  ///< names on standard input are parted by NUL
  unsigned paralelo_ = std::max(1U, std::thread::hardware_concurrency());
};

std::string Validar::Choose(const std::string& name) {
  formato_ = report::FindFormat(name);
  if (formato_ != nullptr) return {};
  std::vector<std::string> names;
  for (const report::FormatInfo& format : report::Formats())
    names.emplace_back(format.nome);
  return "o formato " + text::InQuotes(name) + " não existe" + DidYouMean(name, names) +
         "; há: " + FormatNames();
}

// No more threads than files, where their number is known.
unsigned Validar::Workers() const {
  std::error_code ignored;
  const bool more = std::ranges::any_of(arquivos_, [&ignored](const std::string& name) {
    return name == "-" || std::filesystem::is_directory(name, ignored);
  });
  return more ? paralelo_ : std::min(paralelo_, static_cast<unsigned>(arquivos_.size()));
}

// Why the file to write must stay as it is; empty when it may be written.
std::string Validar::ReasonToKeep() const {
  for (const std::string& target : {saida_, gravar_linha_de_base_}) {
    std::error_code ignored;
    if (target.empty() || !std::filesystem::is_regular_file(target, ignored)) continue;
    const bool input = std::ranges::any_of(arquivos_, [&](const std::string& name) {
      return std::filesystem::equivalent(name, target, ignored);
    });
    if (!input && !BeginsLikeInput(target)) continue;
    return text::InQuotes(target) + " é um arquivo Pré-Formatado; não será sobrescrito. Escolha outro nome.";
  }
  return {};
}

ExitStatus Validar::Report(FileNames& names, const Terminal& terminal, Output& out, Output& err) {
  if (const std::string reason = ReasonToKeep(); !reason.empty()) {
    err.Write("tremvik: " + reason + "\n");
    return ExitStatus::kEnvironment;
  }
  ReportOptions options{.exame = exame_,
                        .formato = formato_ != nullptr ? formato_ : &report::Formats().front(),
                        .saida = saida_,
                        .so_recusados = so_recusados_,
                        .linha_de_base = linha_de_base_,
                        .gravar_linha_de_base = gravar_linha_de_base_,
                        .paralelo = Workers()};
  options.exame.pasta = pasta;
  if (mascarar_) options.exame.mascara = anonymizer::AnySeed();
  options.exame.responder_sim = responder_ == Answers::kYes;
  options.exame.digest = options.formato->wants_digest;
  // What a limit hides is neither new nor gone.
  const bool baseline = !linha_de_base_.empty() || !gravar_linha_de_base_.empty();
  options.exame.limite = limite_ != kNoLimitGiven ? limite_ : baseline ? 0 : kLimit;
  return ReportFiles(names, options, terminal, out, err);
}

}  // namespace

std::unique_ptr<Verb> MakeValidar() { return std::make_unique<Validar>(); }

}  // namespace tremvik::cli
