#include <algorithm>
#include <nlohmann/json.hpp>
#include <vector>

#include "cli/verb_options.h"
#include "cli/verbs/verbs.h"
#include "layout/kinds.h"
#include "report/field_text.h"
#include "report/rule_view.h"
#include "text/folding.h"
#include "text/json_text.h"
#include "text/readable.h"
#include "text/style.h"

namespace tremvik::cli {
namespace {

std::string NameOfGroup(std::string_view group) {
  if (group == "ARQ") return "Arquivo como um todo (ARQ)";
  if (group == "ERR") return "Erros de execução (ERR)";
  const KindInfo* const kind = FindKind(group);
  return "CR=" + std::string(group) +
         (kind == nullptr ? "" : " " + std::string(report::NameOfKind(kind->kind)));
}

class Regras final : public Verb {
 public:
  [[nodiscard]] VerbTexts Texts() const override {
    return {"regras", "Lista as regras com os seus códigos",
            "Exemplos:\n"
            "  tremvik regras\n"
            "  tremvik regras --registro 10     só as do CR=10\n"
            "  tremvik regras --registro arq    só as do arquivo como um todo\n"
            "  tremvik regras --json > regras.jsonl\n\n"
            "O que cada uma pede: tremvik explicar CÓDIGO"};
  }

  void Declare(VerbOptions& options) override {
    const auto take = [this](const std::string& text) { return Take(text); };
    options.Judged("--registro", take, "CR", "Só as regras desse registro, ou arq, ou err");
    options.Json(json_, "Escreve um objeto JSON por linha, com a explicação");
  }

  [[nodiscard]] ExitStatus Execute(const Terminal& terminal, Output& out, Output& /*err*/) override {
    std::string_view group;
    std::size_t count = 0;
    for (const report::Rule& rule : report::Catalogue()) {
      if (!registro_.empty() && report::GroupOf(rule) != registro_) continue;
      ++count;
      if (json_) {
        out.Write(text::JsonText(report::RuleAsJson(rule)) + "\n");
        continue;
      }
      if (report::GroupOf(rule) != group) {
        out.Write(group.empty() ? "" : "\n");
        group = report::GroupOf(rule);
        out.Write(text::Styled(NameOfGroup(group), text::Style::kGood, terminal.colour) + "\n");
      }
      out.Write(report::RenderRuleTitle(rule, {.colour = terminal.colour, .width = terminal.width}));
    }
    if (!json_) out.Write("\n" + text::Count(count, "regra", "regras") + ".\n");
    return ExitStatus::kAccepted;
  }

 private:
  // "10", "CR10", "cr=10", "arq".
  std::string Take(const std::string& text) {
    std::string group = text::Folded(text);
    std::erase(group, ' ');
    if (group.starts_with("cr")) group.erase(0, 2);
    if (group.size() == 1) group.insert(0, 1, '0');
    if (group == "arq") group = "ARQ";
    if (group == "err") group = "ERR";
    const auto rules = report::Catalogue();
    if (std::ranges::find(rules, group, report::GroupOf) == rules.end())
      return "não há regras do registro " + text::InQuotes(text) + "; são 01 a 31, arq e err";
    registro_ = group;
    return {};
  }

  std::string registro_;  ///< group of rules; empty for all
  bool json_ = false;
};

}  // namespace

std::unique_ptr<Verb> MakeRegras() { return std::make_unique<Regras>(); }

}  // namespace tremvik::cli
