#include "report/html_format.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "report/catalogue.h"
#include "report/embedded_texts.h"
#include "report/line_view.h"
#include "report/words.h"
#include "text/markup.h"
#include "text/readable.h"

namespace tremvik::report {
namespace {

using text::Markup;

constexpr text::Look kLook{.colour = false, .width = 100};

std::string Element(std::string_view name, std::string_view content) {
  return fmt::format("<{0}>{1}</{0}>\n", name, content);
}

std::string Entry(std::string_view term, std::string_view words) {
  return words.empty() ? std::string() : fmt::format("<dt>{}</dt><dd>{}</dd>\n", term, Markup(words));
}

std::string RuleLink(std::string_view code) {
  const std::string shown = Markup(code);
  return FindRule(code) == nullptr ? shown : fmt::format("<a href=\"#regra-{0}\">{0}</a>", shown);
}

std::string_view NextCharacter(std::string_view& text) {
  std::size_t size = 1;
  while (size < text.size() && (static_cast<unsigned char>(text[size]) & 0xC0U) == 0x80U)
    ++size;
  const std::string_view character = text.substr(0, size);
  text.remove_prefix(size);
  return character;
}

// The row of a line with what the row of carets marks under it.
std::string Marked(std::string_view row, std::string_view carets) {
  std::string out;
  bool marked = false;
  while (!row.empty()) {
    const bool mark = !carets.empty() && NextCharacter(carets) == "^";
    if (mark != marked) out += mark ? "<mark>" : "</mark>";
    marked = mark;
    out += Markup(NextCharacter(row));
  }
  return marked ? out + "</mark>" : out;
}

// Ruler, line and carets as `RenderLine` draws them.
std::string Drawing(const Place& place, const LineBytes& line) {
  const std::string drawn = RenderLine(place, line, kLook);
  std::vector<std::string_view> rows;
  for (std::string_view rest = drawn; !rest.empty();) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    rows.push_back(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  if (rows.size() < 2) return Element("p", Markup(rows.empty() ? "" : rows.front()));
  const std::string_view carets = rows.size() > 2 ? rows[2] : "";
  std::string out = Markup(rows[0]) + "\n" + Marked(rows[1], carets);
  if (!carets.empty()) out += "\n" + Markup(carets);
  return fmt::format("<pre tabindex=\"0\">{}</pre>\n", out);
}

std::string MessageLines(std::string_view message) {
  std::string out;
  while (!message.empty()) {
    const std::size_t end = std::min(message.find_first_of("\r\n"), message.size());
    if (end > 0) out += (out.empty() ? "" : "\n") + Markup(message.substr(0, end));
    message.remove_prefix(std::min(end + 1, message.size()));
  }
  return out;
}

std::string Article(const Finding& finding, LineFinder& lines) {
  const Place place = PlaceOf(finding);
  const Rule* const rule = FindRule(finding.regra);
  std::string out = fmt::format("<article class=\"{}\">\n<h3>{} {}</h3>\n", TipoName(finding.tipo),
                                RuleLink(finding.regra), Markup(rule == nullptr ? "" : rule->titulo));
  std::string where = place.linha > 0 ? Markup(PlaceInWords(place)) : "no arquivo como um todo";
  if (finding.tipo == FindingKind::kQuestion) where += " <span class=\"tag aviso\">aviso</span>";
  if (finding.doImportador) where += " <span class=\"tag\">o que a importação diz hoje</span>";
  out += fmt::format("<p class=\"quiet\">{}</p>\n", where);
  if (place.linha > 0) out += Drawing(place, lines.Find(place.linha));
  out += fmt::format("<p class=\"message\">{}</p>\n", MessageLines(finding.mensagem));
  std::string entries = Entry("Motivo", OneLine(finding.porque));
  if (rule != nullptr) entries += Entry("Como mendar", rule->como_mendar);
  entries += Entry("Observação", OneLine(Notes(place, finding.mensagem)));
  return out + Element("dl", entries) + "</article>\n";
}

std::string Verdict(FileVerdict estado) {
  return fmt::format("<span class=\"verdict {0}\">{0}</span>", NameOf(estado));
}

std::string Number(std::size_t number) {
  std::string words = text::Count(number, "", "");
  words.pop_back();
  return words;
}

std::string Counts(const Summary& summary) {
  std::string out;
  const auto add = [&out](std::size_t n, std::string_view one, std::string_view many,
                          std::string_view style) {
    out += fmt::format("<li class=\"{}\"><b>{}</b>{}</li>\n", style, Number(n), n == 1 ? one : many);
  };
  add(summary.arquivos, "arquivo", "arquivos", "");
  add(summary.aceitos, "aceito", "aceitos", "aceito");
  add(summary.recusados, "recusado", "recusados", summary.recusados > 0 ? "recusado" : "");
  if (summary.erros > 0) add(summary.erros, "não examinado", "não examinados", "erro");
  add(summary.faltas, "falta", "faltas", summary.faltas > 0 ? "falta" : "");
  if (summary.avisos > 0) add(summary.avisos, "aviso", "avisos", "aviso");
  return "<ul class=\"counts\">\n" + out + "</ul>\n";
}

std::string RulesTable(const Summary& summary) {
  std::vector<std::pair<std::string, std::size_t>> rules(summary.por_regra.begin(), summary.por_regra.end());
  std::ranges::stable_sort(rules, std::ranges::greater(), &std::pair<std::string, std::size_t>::second);
  std::string rows = "<tr><th>Regra</th><th>Título</th><th class=\"number\">Vezes</th></tr>\n";
  for (const auto& [code, times] : rules) {
    const Rule* const rule = FindRule(code);
    rows += fmt::format("<tr><td class=\"code\">{}</td><td>{}</td><td class=\"number\">{}</td></tr>\n",
                        RuleLink(code), Markup(rule == nullptr ? "" : rule->titulo), Number(times));
  }
  return Element("h2", "Por regra") + Element("table", rows);
}

std::string Explanations(const Summary& summary) {
  std::string out;
  for (const auto& [code, times] : summary.por_regra) {
    const Rule* const rule = FindRule(code);
    if (rule == nullptr) continue;
    out += fmt::format("<section id=\"regra-{0}\">\n<h3>{0} {1}</h3>\n", Markup(code), Markup(rule->titulo));
    out += Element("p", Markup(rule->explicacao)) + Element("p", Markup(rule->como_mendar)) + "</section>\n";
  }
  return out.empty() ? out : Element("h2", "O que as regras pedem") + out;
}

}  // namespace

std::string HtmlFormat::Begin(const Heading& heading) {
  head_ = fmt::format(
      "<!DOCTYPE html>\n<html lang=\"pt-BR\">\n<head>\n<meta charset=\"utf-8\">\n"
      "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src 'unsafe-inline'\">\n"
      "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
      "<title>Relatório de exame de arquivos Pré-Formatado</title>\n<style>\n{}</style>\n</head>\n<body>\n"
      "<h1>Relatório de exame</h1>\n<p class=\"quiet\">Arquivos Pré-Formatado. {}. Tabelas de referência: {}.</p>\n",
      EmbeddedStyle(), Markup(heading.programa), Markup(heading.tabelas));
  return {};
}

std::string HtmlFormat::File(const FileReport& file) {
  ++files_;
  if (files_ <= kMostFindings) {
    AddFile(file);
  } else {
    left_out_ += file.exame.inconsistencias.size();
  }
  return {};
}

void HtmlFormat::AddFile(const FileReport& file) {
  const Examination& exame = file.exame;
  const std::string name = Markup(file.arquivo);
  const bool silent = exame.inconsistencias.empty() && exame.naoExaminado.empty() && file.problema.empty();
  rows_ += fmt::format("<tr><td>{}</td><td>{}</td><td class=\"number\">{}</td></tr>\n",
                       silent ? name : fmt::format("<a href=\"#arquivo-{}\">{}</a>", files_, name),
                       Verdict(file.estado), Number(exame.inconsistencias.size()));
  if (silent) return;
  sections_ +=
      fmt::format("<h2 id=\"arquivo-{}\">{}</h2>\n<p>{}, {}, {}</p>\n", files_, name, Verdict(file.estado),
                  text::Count(static_cast<std::uint64_t>(exame.declaracoes), "declaração", "declarações"),
                  text::Count(static_cast<std::uint64_t>(exame.registros), "registro", "registros"));
  if (!file.sha256.empty()) sections_ += fmt::format("<p class=\"quiet\">SHA-256 {}</p>\n", file.sha256);
  if (!file.problema.empty()) sections_ += Element("p", Markup(OneLine(file.problema)));
  LineFinder lines(file.conteudo);
  for (const Finding& finding : exame.inconsistencias) {
    if (findings_ == kMostFindings) {
      ++left_out_;
      continue;
    }
    sections_ += Article(finding, lines);
    ++findings_;
  }
  for (const Unexamined& unexamined : exame.naoExaminado)
    sections_ += Element("p", Markup(InWords(unexamined)));
  if (exame.limitado) sections_ += Element("p", Markup(kLimitReached));
}

std::string HtmlFormat::End(const Summary& summary) {
  std::string out = head_ + Counts(summary);
  if (left_out_ > 0 || files_ > kMostFindings) {
    out += fmt::format(
        "<p class=\"verdict erro\">Esta página mostra só as primeiras {} faltas e os primeiros {} arquivos; {} "
        "ficaram fora dela.</p>\n",
        Number(kMostFindings), Number(kMostFindings), Number(left_out_));
  }
  if (!summary.por_regra.empty()) out += RulesTable(summary);
  out += Element("h2", "Por arquivo");
  out += Element(
      "table",
      "<tr><th>Arquivo</th><th>Resultado</th><th class=\"number\">Inconsistências</th></tr>\n" + rows_);
  return out + sections_ + Explanations(summary) + "</body>\n</html>\n";
}

}  // namespace tremvik::report
