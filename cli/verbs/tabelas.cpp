#include <fmt/format.h>

#include <filesystem>
#include <system_error>

#include "adapters/local/replacement.h"
#include "adapters/local/system.h"
#include "adapters/sqlite/reference_tables.h"
#include "adapters/tables/embedded_tables.h"
#include "cli/verb_options.h"
#include "cli/verbs/verbs.h"
#include "text/readable.h"

namespace tremvik::cli {
namespace {

void WriteProblems(const std::vector<std::string>& problems, Output& out) {
  for (const auto& problem : problems)
    out.Write(text::Visible(problem) + "\n");
  out.Write(text::Count(problems.size(), "problema", "problemas") + ".\n");
}

class Construir final : public Verb {
 public:
  [[nodiscard]] VerbTexts Texts() const override {
    return {"tabelas construir", "Constrói o banco a partir de arquivos CSV",
            "Exemplos:\n"
            "  tremvik tabelas construir tblFixas.fix\n"
            "  tremvik tabelas construir --dados minhas-tabelas tblFixas.fix"};
  }

  void Declare(VerbOptions& options) override {
    options.Argument("ARQUIVO", arquivo_,
                     "Banco a gravar (tblFixas.fix); só é substituído se tudo estiver certo", true);
    options.Text("--dados", dados_, "DIR",
                 "Pasta dos arquivos CSV; sem esta opção, as linhas do próprio programa");
  }

  [[nodiscard]] ExitStatus Execute(const Terminal& terminal, Output& out, Output& err) override;
  [[nodiscard]] std::string Sentence(const RuntimeError& error) const override;

 private:
  std::string arquivo_;
  std::string dados_;  ///< folder of the CSV files; empty for the built-in rows
};

ExitStatus Construir::Execute(const Terminal& /*terminal*/, Output& out, Output& err) {
  std::error_code ignored;
  if (!dados_.empty() && !std::filesystem::is_directory(dados_, ignored)) {
    err.Write("tremvik: a pasta \"" + text::Visible(dados_) +
              "\" não existe ou não pode ser lida. Confira --dados.\n");
    return ExitStatus::kEnvironment;
  }
  if (dados_.empty()) {
    ConstruirTabelasPadrao(arquivo_);
  } else if (const auto problems = ConstruirTabelas(dados_, arquivo_); !problems.empty()) {
    WriteProblems(problems, out);
    out.Write("Nada foi escrito em \"" + text::Visible(arquivo_) + "\".\n");
    return ExitStatus::kRefused;
  }
  out.Write("Tabelas construídas em \"" + text::Visible(arquivo_) + "\".\n");
  return ExitStatus::kAccepted;
}

std::string Construir::Sentence(const RuntimeError& error) const {
  const std::string name = text::InQuotes(arquivo_);
  switch (error.number()) {
    case erro::kMemoriaInsuficiente:
    case erro::kArgumentoInvalido:
      return Remedy(error, pasta);
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

class Verificar final : public Verb {
 public:
  [[nodiscard]] VerbTexts Texts() const override {
    return {"tabelas verificar", "Diz o que falta ou está errado em um banco",
            "Exemplo:\n  tremvik tabelas verificar ~/.local/share/tremvik/tblFixas.fix"};
  }

  void Declare(VerbOptions& options) override {
    options.Argument("ARQUIVO", arquivo_, "Banco a verificar", true);
  }

  [[nodiscard]] ExitStatus Execute(const Terminal& /*terminal*/, Output& out, Output& /*err*/) override {
    const auto problems = VerificarTabelas(arquivo_);
    if (problems.empty()) {
      out.Write("As tabelas de " + text::InQuotes(arquivo_) + " estão completas.\n");
      return ExitStatus::kAccepted;
    }
    WriteProblems(problems, out);
    return ExitStatus::kRefused;
  }

  [[nodiscard]] std::string Sentence(const RuntimeError& error) const override {
    return fmt::format(
        "não foi possível ler as tabelas de {}{}. Confira o nome, ou construa-as com "
        "\"tremvik tabelas construir\".",
        text::InQuotes(arquivo_), InWords(error));
  }

 private:
  std::string arquivo_;
};

// Writes the rows of the program as the CSV files that "construir" reads.
class Exportar final : public Verb {
 public:
  [[nodiscard]] VerbTexts Texts() const override {
    return {"tabelas exportar", "Grava as tabelas do programa como arquivos CSV",
            "Exemplos:\n"
            "  tremvik tabelas exportar minhas-tabelas\n"
            "  tremvik tabelas construir --dados minhas-tabelas tblFixas.fix\n\n"
            "Troque nelas as linhas que a sua autoridade publica e construa o banco de novo."};
  }

  void Declare(VerbOptions& options) override {
    options.Argument("DIR", pasta_, "Pasta dos arquivos CSV; criada se não existir", true);
    options.Flag("--sobrescrever", sobrescrever_,
                 "Substitui os arquivos que já existirem e forem diferentes");
  }

  [[nodiscard]] ExitStatus Execute(const Terminal& /*terminal*/, Output& out, Output& err) override {
    for (const EmbeddedFile& file : EmbeddedFiles()) {
      if (sobrescrever_ || !IsOther(file)) continue;
      err.Write(fmt::format("tremvik: {} já existe e é outro. Escolha outra pasta ou use --sobrescrever.\n",
                            text::InQuotes(PathOf(file))));
      return ExitStatus::kEnvironment;
    }
    MakeFolder(pasta_);
    for (const EmbeddedFile& file : EmbeddedFiles())
      ReplaceFile(PathOf(file), file.text);
    out.Write(fmt::format("{} em {}.\n",
                          text::Count(EmbeddedFiles().size(), "tabela gravada", "tabelas gravadas"),
                          text::InQuotes(pasta_)));
    return ExitStatus::kAccepted;
  }

  [[nodiscard]] std::string Sentence(const RuntimeError& error) const override {
    return fmt::format(
        "não foi possível gravar as tabelas em {}{}. Confira se a pasta existe e se você pode gravar nela.",
        text::InQuotes(pasta_), InWords(error));
  }

 private:
  [[nodiscard]] std::string PathOf(const EmbeddedFile& file) const {
    return pasta_ + "/" + std::string(file.name);
  }
  [[nodiscard]] bool IsOther(const EmbeddedFile& file) const {
    if (IsMissing(PathOf(file))) return false;
    return ReadRegularFile(PathOf(file), file.text.size()) != file.text;
  }

  std::string pasta_;
  bool sobrescrever_ = false;
};

}  // namespace

std::unique_ptr<Verb> MakeTabelasConstruir() { return std::make_unique<Construir>(); }
std::unique_ptr<Verb> MakeTabelasVerificar() { return std::make_unique<Verificar>(); }
std::unique_ptr<Verb> MakeTabelasExportar() { return std::make_unique<Exportar>(); }

}  // namespace tremvik::cli
