#include "report/rule_view.h"

#include <fmt/format.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "examination/workpiece.h"
#include "layout/kinds.h"
#include "report/words.h"
#include "text/readable.h"

namespace tremvik::report {
namespace {

using text::Style;

constexpr std::size_t kIndent = 2;

// "CR05.Ref" as "Ref do CR=05, posições 38 a 43".
std::string FieldInWords(std::string_view reference) {
  const auto dot = reference.find('.');
  const KindInfo* const kind = dot == 4 ? FindKind(reference.substr(2, 2)) : nullptr;
  const FieldInfo* const field = kind == nullptr ? nullptr : FindField(*kind, reference.substr(dot + 1));
  if (field == nullptr) return std::string(reference);
  const int last = field->position + field->width - 1;
  const std::string columns = field->width == 1 ? fmt::format("posição {}", last)
                                                : fmt::format("posições {} a {}", field->position, last);
  return fmt::format("{} do CR={} ({})", field->name, kind->code, columns);
}

std::string FieldsInWords(std::string_view references) {
  std::string words;
  while (!references.empty()) {
    const std::string_view one = references.substr(0, references.find(' '));
    words.append(words.empty() ? "" : "; ").append(FieldInWords(one));
    references.remove_prefix(std::min(references.size(), one.size() + 1));
  }
  return words;
}

}  // namespace

std::string RenderParagraph(std::string_view label, std::string_view body, const text::Look& look) {
  std::string out(kIndent, ' ');
  out += text::Styled(std::string(label) + ":", Style::kDim, look.colour) + " ";
  // The label's cells stand for it while the lines are broken.
  const std::size_t taken = text::Cells(label) + 2;
  bool first = true;
  for (const std::string& line : text::Wrap(std::string(taken, 'x').append(body), look.width - 2 * kIndent)) {
    if (!first) out.append(2 * kIndent, ' ');
    out.append(std::string_view(line).substr(first ? std::min(taken, line.size()) : 0)).append("\n");
    first = false;
  }
  return out;
}

std::string RenderRuleTitle(const Rule& rule, const text::Look& look) {
  const std::size_t margin = std::max<std::size_t>(10, rule.codigo.size() + 2);
  std::string before =
      text::Styled(rule.codigo, Style::kBold, look.colour) + std::string(margin - rule.codigo.size(), ' ');
  std::string out;
  for (const std::string& line : text::Wrap(rule.titulo, look.width - margin)) {
    out.append(before).append(line).append("\n");
    before.assign(margin, ' ');
  }
  return out;
}

std::string RenderRule(const Rule& rule, const text::Look& look) {
  std::string out = RenderRuleTitle(rule, look) + RenderParagraph("Mensagem", MessageOf(rule), look) +
                    RenderParagraph("O que se pede", rule.explicacao, look) +
                    RenderParagraph("Como mendar", rule.como_mendar, look);
  if (!rule.campos.empty()) out += RenderParagraph("Olha também", FieldsInWords(rule.campos), look);
  return out;
}

nlohmann::ordered_json RuleAsJson(const Rule& rule) {
  nlohmann::ordered_json object{{"tipo", "regra"},
                                {"regra", rule.codigo},
                                {"titulo", rule.titulo},
                                {"texto1", rule.texto1},
                                {"texto2", rule.texto2},
                                {"explicacao", rule.explicacao},
                                {"comoMendar", rule.como_mendar},
                                {"campos", nlohmann::ordered_json::array()}};
  std::string_view fields = rule.campos;
  while (!fields.empty()) {
    const std::string_view one = fields.substr(0, fields.find(' '));
    object["campos"].push_back(one);
    fields.remove_prefix(std::min(fields.size(), one.size() + 1));
  }
  return object;
}

std::string MessageOf(const Rule& rule) {
  std::string message = OneLine(rule.texto1 + "\n" + rule.texto2);
  for (auto gap = message.find("{}"); gap != std::string::npos; gap = message.find("{}"))
    message.replace(gap, 2, "…");
  return message;
}

std::string_view GroupOf(const Rule& rule) {
  const std::string_view group = std::string_view(rule.codigo).substr(0, rule.codigo.find('-'));
  return group.starts_with("CR") ? group.substr(2) : group;
}

}  // namespace tremvik::report
