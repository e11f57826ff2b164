#include <fmt/format.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <vector>

#include "cli/examined_file.h"
#include "cli/line_range.h"
#include "cli/verb_options.h"
#include "cli/verbs/verbs.h"
#include "report/file_tree.h"
#include "report/line_view.h"
#include "report/rule_view.h"
#include "report/search.h"
#include "report/tree_view.h"
#include "report/words.h"
#include "text/json_text.h"
#include "text/readable.h"

namespace tremvik::cli {
namespace {

using report::Candidate;
using report::Rule;

constexpr std::size_t kMostExplained = 3;  // rules of one message that are told in full
constexpr std::size_t kMostNamed = 20;
constexpr std::size_t kMostPlaces = 10;

class Explicar final : public Verb {
 public:
  [[nodiscard]] VerbTexts Texts() const override {
    return {"explicar", "Explica uma regra, uma mensagem ou uma linha",
            "Exemplos:\n"
            "  tremvik explicar CR10-11\n"
            "  tremvik explicar \"tabela 3 cr=10 campo base calculo inconsistente\"\n"
            "  tremvik explicar CR10-11 marco.txt               onde ela falha no arquivo\n"
            "  tremvik explicar CR10-11 marco.txt --linha 96    só nessa linha\n"
            "  tremvik explicar marco.txt --linha 96            tudo o que falha nela\n\n"
            "A mensagem pode vir como foi ouvida: sem acentos, pontuação, maiúsculas ou\n"
            "cabeçalho, com valores quaisquer e com uma palavra a menos ou errada."};
  }

  void Declare(VerbOptions& options) override {
    options.Argument("REGRA", texto_, "Código da regra ou texto da mensagem, entre aspas", true);
    options.Argument("ARQUIVO", arquivo_, "Arquivo em que a regra falha", false);
    const auto line = [this](const std::string& text) -> std::string {
      linha_ = ParseLineRange(text);
      if (linha_ && linha_->first == linha_->last) return {};
      return "o valor " + text::InQuotes(text) + " não é o número de uma linha";
    };
    options.Judged("--linha", line, "N", "A linha do arquivo");
    options.Folder(pasta);
    options.Json(json_, "Escreve um objeto JSON por linha");
  }

  // With a line and one argument, that is the file.
  [[nodiscard]] std::string Complaint() override {
    if (!linha_ || !arquivo_.empty()) return {};
    arquivo_ = std::exchange(texto_, {});
    return {};
  }

  [[nodiscard]] ExitStatus Execute(const Terminal& terminal, Output& out, Output& err) override;

 private:
  [[nodiscard]] std::vector<Candidate> Asked() const;
  [[nodiscard]] std::string NothingFound() const;
  void Explain(const std::vector<Candidate>& rules, Output& out) const;
  ExitStatus InFile(std::vector<Candidate> rules, Output& out, Output& err) const;
  void ShowLine(const report::FileTree& tree, const report::FindingsByLine& findings, Output& out) const;
  void ShowPlaces(const ExaminedFile& file, const std::vector<const Finding*>& found, Output& out) const;

  std::string texto_;
  std::string arquivo_;
  std::optional<LineRange> linha_;
  bool json_ = false;
  text::Look look_;
};

// The rules that the user asks about; none where the text is no rule's.
std::vector<Candidate> Explicar::Asked() const {
  if (texto_.empty()) return {};
  const std::string code = report::CodeIn(texto_);
  if (code.empty()) return report::FindByMessage(texto_);
  const Rule* const rule = report::FindRule(code);
  return rule == nullptr ? std::vector<Candidate>() : std::vector{Candidate{rule, 1, true}};
}

std::string Explicar::NothingFound() const {
  const std::string code = report::CodeIn(texto_);
  if (!code.empty()) return "a regra " + code + " não existe. Veja todas com: tremvik regras";
  const std::string hint = ProblemOfFile(texto_).empty()
                               ? ". Para um arquivo: tremvik explicar ARQUIVO --linha N"
                               : ". Confira o texto ou procure em: tremvik regras";
  return "nenhuma regra tem uma mensagem parecida com " + text::InQuotes(texto_.substr(0, 200)) + hint;
}

void Explicar::Explain(const std::vector<Candidate>& rules, Output& out) const {
  if (json_) {
    for (const Candidate& one : rules) {
      auto object = report::RuleAsJson(*one.regra);
      object["semelhanca"] = one.semelhanca;
      object["melhor"] = one.melhor;
      out.Write(text::JsonText(object) + "\n");
    }
    return;
  }
  const auto nearest = static_cast<std::size_t>(std::ranges::count(rules, true, &Candidate::melhor));
  const std::size_t told = nearest <= kMostExplained ? nearest : 0;
  const auto paragraph = [&](const std::string& words) {
    out.Write(text::StyledLines(words, text::Style::kPlain, look_));
  };
  if (nearest > 1) {
    paragraph(fmt::format(
        "{} regras têm essa mensagem{}\n", nearest,
        told > 0 ? "." : "; com o arquivo se sabe qual delas é: tremvik explicar MENSAGEM ARQUIVO."));
  }
  const std::size_t named = std::min(rules.size(), std::max(nearest, told + kMostNamed));
  for (std::size_t i = 0; i < named; ++i) {
    if (i == nearest) out.Write("\nTambém parecidas:\n");
    const bool in_full = i < told;
    out.Write((in_full && i > 0 ? "\n" : "") + (in_full ? report::RenderRule(*rules[i].regra, look_)
                                                        : report::RenderRuleTitle(*rules[i].regra, look_)));
  }
  if (rules.size() > named) paragraph(fmt::format("e mais {}.", rules.size() - named));
  if (named > told) paragraph("\nO que uma regra pede: tremvik explicar CÓDIGO");
}

void Explicar::ShowLine(const report::FileTree& tree, const report::FindingsByLine& findings,
                        Output& out) const {
  const auto& record = tree.records()[static_cast<std::size_t>(linha_->first) - 1];
  if (json_) {
    out.Write(text::JsonText(report::RecordAsJson(tree, record, findings)) + "\n");
    return;
  }
  out.Write(report::RenderAncestors(tree, record, look_));
  out.Write(report::RenderRecord(tree, record, findings, report::FieldLayout::kOneALine, look_));
  if (!findings.contains(record.linha)) out.Write("Nada está errado nesta linha.\n");
}

void Explicar::ShowPlaces(const ExaminedFile& file, const std::vector<const Finding*>& found,
                          Output& out) const {
  report::LineFinder lines(file.bytes);
  for (std::size_t i = 0; i < found.size(); ++i) {
    if (json_) {
      nlohmann::ordered_json object{{"tipo", "lugar"}};
      object["inconsistencia"] = report::FindingAsJson(*found[i]);
      out.Write(text::JsonText(object) + "\n");
      continue;
    }
    if (i == kMostPlaces) {
      out.Write(fmt::format("\ne em mais {}. Todos: tremvik mostrar ARQUIVO\n",
                            text::Count(found.size() - i, "lugar", "lugares")));
      return;
    }
    const report::Place place = report::PlaceOf(*found[i]);
    out.Write("\n");
    if (place.linha > 0) {
      out.Write(text::StyledLines(report::PlaceInWords(place), text::Style::kBold, look_) +
                report::RenderLine(place, lines.Find(place.linha), look_));
    }
    if (!found[i]->porque.empty()) out.Write(report::RenderParagraph("Motivo", found[i]->porque, look_));
  }
}

// What is found in the file: by the rules asked about, or on the line. Rules that are found there come first.
ExitStatus Explicar::InFile(std::vector<Candidate> rules, Output& out, Output& err) const {
  const ExaminedFile file = ReadAndExamine(arquivo_, pasta);
  if (!file.problema.empty()) {
    err.Write("tremvik: " + file.problema + "\n");
    return ExitStatus::kEnvironment;
  }
  const report::FileTree tree(file.bytes);
  if (linha_ && static_cast<std::size_t>(linha_->first) > tree.records().size()) {
    err.Write(fmt::format("tremvik: {} não tem a linha {}: termina na {}.\n", text::InQuotes(arquivo_),
                          linha_->first, tree.records().size()));
    return ExitStatus::kEnvironment;
  }
  std::vector<const Finding*> found;
  std::set<std::string, std::less<>> codes;
  for (const Finding& finding : file.exame.inconsistencias) {
    const auto is_it = [&](const Candidate& one) { return one.regra->codigo == finding.regra; };
    if (linha_ && finding.linha != linha_->first) continue;
    if (!texto_.empty() && std::ranges::none_of(rules, is_it)) continue;
    found.push_back(&finding);
    codes.insert(finding.regra);
    const Rule* const rule = report::FindRule(finding.regra);
    if (texto_.empty() && rule != nullptr && std::ranges::none_of(rules, is_it))
      rules.push_back({rule, 1, true});
  }
  if (!codes.empty())
    std::erase_if(rules, [&](const Candidate& one) { return !codes.contains(one.regra->codigo); });
  if (linha_) ShowLine(tree, report::ByLine(file.exame.inconsistencias), out);
  if (linha_ && !json_ && !rules.empty()) out.Write("\n");
  Explain(rules, out);
  if (!linha_) ShowPlaces(file, found, out);
  if (!linha_ && found.empty() && !json_) {
    out.Write(fmt::format("\nEm {} nada é recusado por {}.\n", text::InQuotes(arquivo_),
                          rules.size() == 1 ? "essa regra" : "essas regras"));
  }
  return ExitStatus::kAccepted;
}

ExitStatus Explicar::Execute(const Terminal& terminal, Output& out, Output& err) {
  look_ = {.colour = terminal.colour, .width = terminal.width};
  std::vector<Candidate> rules = Asked();
  if (rules.empty() && !texto_.empty()) {
    err.Write("tremvik: " + NothingFound() + "\n");
    return ExitStatus::kEnvironment;
  }
  if (!arquivo_.empty()) return InFile(std::move(rules), out, err);
  Explain(rules, out);
  return ExitStatus::kAccepted;
}

}  // namespace

std::unique_ptr<Verb> MakeExplicar() { return std::make_unique<Explicar>(); }

}  // namespace tremvik::cli
