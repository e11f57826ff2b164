#include "report/text_format.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

#include "report/catalogue.h"
#include "report/line_view.h"
#include "runtime/text.h"
#include "text/readable.h"
#include "text/table.h"

namespace tremvik::report {
namespace {

using text::Style;

constexpr std::size_t kIndent = 2;

// "  Label: text", its further lines under the first, each ended by LF.
std::string Paragraph(std::string_view label, std::string_view body, const text::Look& look) {
  std::string out(kIndent, ' ');
  out += text::Styled(std::string(label) + ":", Style::kDim, look.colour) + " ";
  const std::size_t taken = kIndent + text::Cells(label) + 2;
  std::size_t lines = 0;
  for (const std::string& line : text::Wrap(std::string(taken, 'x').append(body), look.width - 2 * kIndent)) {
    const std::string_view rest = std::string_view(line).substr(lines == 0 ? taken : 0);
    if (lines++ > 0) out.append(2 * kIndent, ' ');
    out.append(TrimEnd(rest)).append("\n");
  }
  return out;
}

// The findings of one file, told one after the other.
class Teller {
 public:
  Teller(const FileReport& file, const text::Look& look) : lines_(file.conteudo), look_(look) {}

  std::string Tell(const Finding& finding) {
    const Place place = PlaceOf(finding);
    std::string out = "\n";
    if (place.linha > 0) {
      out += text::StyledLines(PlaceInWords(place), Style::kBold, look_);
      out += RenderLine(place, lines_.Find(place.linha), look_);
    }
    out +=
        Paragraph(finding.tipo == FindingKind::kQuestion ? "Pergunta" : "Mensagem", finding.mensagem, look_);
    const std::string notes = Notes(place, finding.mensagem);
    if (!notes.empty()) out += Paragraph("Nota", std::string_view(notes).substr(6, notes.size() - 7), look_);
    return out + TellRule(finding);
  }

 private:
  std::string TellRule(const Finding& finding) {
    const Rule* const rule = FindRule(finding.regra);
    std::string name = finding.regra;
    if (rule != nullptr) name += ", " + rule->titulo;
    if (finding.doImportador) name += " (o que a importação diz hoje)";
    std::string out = Paragraph("Regra", name, look_);
    if (!finding.porque.empty()) out += Paragraph("Motivo", finding.porque, look_);
    if (rule == nullptr) return out;
    const auto [told, first] = told_.try_emplace(finding.regra, finding.linha);
    if (!first) return out + Paragraph("Como mendar", fmt::format("veja a linha {}", told->second), look_);
    return out + Paragraph("O que se pede", rule->explicacao, look_) +
           Paragraph("Como mendar", rule->como_mendar, look_);
  }

  LineFinder lines_;
  text::Look look_;
  std::map<std::string, int> told_;  ///< rules explained, and at which line
};

std::string Verdict(const FileReport& file, const text::Look& look) {
  std::string verdict = text::Styled(
      NameOf(file.estado), file.estado == FileVerdict::kAccepted ? Style::kGood : Style::kFault, look.colour);
  if (file.estado == FileVerdict::kError) return verdict;
  verdict += fmt::format(
      " ({}, {})",
      text::Count(static_cast<std::uint64_t>(file.exame.declaracoes), "declaração", "declarações"),
      text::Count(static_cast<std::uint64_t>(file.exame.registros), "registro", "registros"));
  const auto& findings = file.exame.inconsistencias;
  const auto questions =
      static_cast<std::size_t>(std::ranges::count(findings, FindingKind::kQuestion, &Finding::tipo));
  if (!findings.empty()) verdict += ": " + FindingsInWords(findings.size() - questions, questions);
  return verdict;
}

// What the baseline knows of the file.
std::string Baselined(const FileReport& file, const text::Look& look) {
  std::string out;
  if (file.conhecidas > 0) {
    out += "\n" + text::Count(file.conhecidas, "inconsistência", "inconsistências") +
           " da linha de base não se mostra" + (file.conhecidas > 1 ? "m" : "") + ".\n";
  }
  if (!file.sumidas.empty()) out += "\nDa linha de base, não está mais no arquivo:\n";
  for (const KnownFinding& gone : file.sumidas)
    out += fmt::format("{}\n", fmt::join(text::Wrap("- " + InWords(gone), look.width), "\n  "));
  return out;
}

std::string RulesTable(const Summary& summary, const text::Look& look) {
  std::vector<std::pair<std::string, std::size_t>> rules(summary.por_regra.begin(), summary.por_regra.end());
  std::ranges::stable_sort(rules, std::ranges::greater(), &std::pair<std::string, std::size_t>::second);
  text::TextTable table{.columns = {{"Vezes", true}, {"Regra"}, {"Título"}}, .rows = {}};
  for (const auto& [code, times] : rules) {
    const Rule* const rule = FindRule(code);
    table.rows.push_back({text::Count(times, "", ""), code, rule == nullptr ? "" : rule->titulo});
    table.rows.back().front().pop_back();
  }
  return table.Render(look.width, look.colour);
}

std::string FilesTable(const Summary& summary, const text::Look& look) {
  text::TextTable table{.columns = {{"Vezes", true}, {"Arquivo"}}, .rows = {}};
  for (const auto& [name, times] : summary.por_arquivo) {
    table.rows.push_back({text::Count(times, "", ""), name});
    table.rows.back().front().pop_back();
  }
  std::string out = "\n" + table.Render(look.width, look.colour);
  const std::size_t others = summary.com_inconsistencias - summary.por_arquivo.size();
  if (others > 0) out += "e mais " + text::Count(others, "arquivo", "arquivos") + ".\n";
  return out;
}

}  // namespace

std::string FindingsInWords(std::size_t faltas, std::size_t avisos) {
  std::string words = faltas > 0 || avisos == 0 ? text::Count(faltas, "falta", "faltas") : std::string();
  if (avisos > 0) words += (words.empty() ? "" : ", ") + text::Count(avisos, "aviso", "avisos");
  return words;
}

std::string RenderSummary(const Summary& summary, const text::Look& look, bool spaced) {
  std::string out;
  if (summary.faltas + summary.avisos > 1) out += RulesTable(summary, look);
  if (summary.com_inconsistencias > 1) out += FilesTable(summary, look);
  if (!out.empty() && !spaced) out.insert(0, 1, '\n');
  if (!out.empty()) out += "\n" + FindingsInWords(summary.faltas, summary.avisos) + ".\n";
  out += text::Count(summary.arquivos, "arquivo", "arquivos") + ": " +
         text::Count(summary.aceitos, "aceito", "aceitos") + ", " +
         text::Count(summary.recusados, "recusado", "recusados");
  if (summary.erros > 0) out += ", " + text::Count(summary.erros, "não validado", "não validados");
  return out + ".\n";
}

std::string TextFormat::Begin(const Heading& /*heading*/) { return {}; }

std::string TextFormat::File(const FileReport& file) {
  std::string out = text::Visible(file.arquivo) + ": " + Verdict(file, look_) + "\n";
  spaced_ = true;
  if (file.estado == FileVerdict::kError) return out + text::Visible(file.problema) + "\n\n";
  Teller teller(file, look_);
  for (const Finding& finding : file.exame.inconsistencias)
    out += teller.Tell(finding);
  for (const Unexamined& gap : file.exame.naoExaminado) {
    const std::string lines = gap.linha == gap.ate
                                  ? fmt::format("A linha {} não foi examinada", gap.linha)
                                  : fmt::format("As linhas {} a {} não foram examinadas", gap.linha, gap.ate);
    out +=
        "\n" + fmt::format("{}", fmt::join(text::Wrap(lines + ": " + gap.porque, look_.width), "\n")) + "\n";
  }
  out += Baselined(file, look_);
  if (file.exame.limitado) {
    out += fmt::format("\nO limite de {} foi atingido: pode haver mais. --limite 0 mostra todas.\n",
                       text::Count(file.exame.inconsistencias.size(), "inconsistência", "inconsistências"));
  }
  spaced_ = std::ranges::count(out, '\n') > 1;
  return spaced_ ? out + "\n" : out;
}

std::string TextFormat::End(const Summary& summary) { return RenderSummary(summary, look_, spaced_); }

}  // namespace tremvik::report
