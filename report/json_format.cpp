#include "report/json_format.h"

#include <nlohmann/json.hpp>
#include <string_view>

#include "report/embedded_texts.h"
#include "report/tree_view.h"
#include "text/json_text.h"

namespace tremvik::report {
namespace {

using Json = nlohmann::ordered_json;

Json ObjectOf(const KnownFinding& known) {
  return {{"regra", known.regra}, {"registro", known.registro},
          {"campo", known.campo}, {"valor", known.valor},
          {"ie", known.ie},       {"referencia", known.referencia},
          {"vezes", known.vezes}};
}

Json ObjectOf(const FileReport& file) {
  Json object{{"arquivo", file.arquivo},
              {"tamanho", file.tamanho},
              {"sha256", file.sha256},
              {"estado", NameOf(file.estado)}};
  if (file.estado == FileVerdict::kError) object["problema"] = file.problema;
  Json& findings = object["inconsistencias"] = Json::array();
  for (const Finding& finding : file.exame.inconsistencias)
    findings.push_back(FindingAsJson(finding));
  Json& gaps = object["naoExaminado"] = Json::array();
  for (const Unexamined& gap : file.exame.naoExaminado)
    gaps.push_back(Json{{"linha", gap.linha}, {"ate", gap.ate}, {"porque", gap.porque}});
  if (file.exame.limitado) object["limitado"] = true;
  if (file.conhecidas > 0) object["conhecidas"] = file.conhecidas;
  for (const KnownFinding& gone : file.sumidas)
    object["sumidas"].push_back(ObjectOf(gone));
  return object;
}

}  // namespace

std::string JsonFormat::Begin(const Heading& heading) {
  return R"({"programa":)" + text::JsonText(heading.programa) + R"(,"tabelas":)" +
         text::JsonText(heading.tabelas) + R"(,"arquivos":[)";
}

std::string JsonFormat::File(const FileReport& file) {
  const std::string_view before = first_ ? "\n" : ",\n";
  first_ = false;
  return std::string(before) + text::JsonText(ObjectOf(file));
}

std::string JsonFormat::End(const Summary& summary) {
  Json object{{"arquivos", summary.arquivos},     {"aceitos", summary.aceitos},
              {"recusados", summary.recusados},   {"erros", summary.erros},
              {"faltas", summary.faltas},         {"avisos", summary.avisos},
              {"conhecidas", summary.conhecidas}, {"sumidas", summary.sumidas}};
  object["porRegra"] = Json::object();
  for (const auto& [rule, times] : summary.por_regra)
    object["porRegra"][rule] = times;
  return "\n],\"resumo\":" + text::JsonText(object) + "}\n";
}

std::string_view JsonSchema() { return EmbeddedSchema(); }

}  // namespace tremvik::report
