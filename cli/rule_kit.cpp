#include "cli/rule_kit.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string_view>

#include "host/screen.h"
#include "layout/kinds.h"
#include "report/catalogue.h"

namespace tremvik::cli {
namespace {

using nlohmann::ordered_json;
using sample::RuleExample;

constexpr std::string_view kContact =
    "Sr(a) usuário(a), entre em contato com a empresa\r\n"
    "responsável pela geração do arquivo Pré-Formatado\r\n"
    "e informe a mensagem abaixo : \r\n\r\n";

constexpr std::string_view kReadme =
    "# Um arquivo para cada regra\n\n"
    "Cada arquivo desta pasta é pequeno e válido, salvo por uma só falta: quebra a regra que lhe dá o nome. Servem\n"
    "para testar programas que geram arquivos Pré-Formatados e programas que os importam.\n\n"
    "`esperado.json` diz, para cada arquivo, o que a importação responde: a regra, o código de saída, as caixas de\n"
    "mensagem na ordem (texto inteiro, estilo e título), os lugares em que as faltas realmente estão (linha,\n"
    "registro, campo e coluna) e o porquê em números, onde há. Perguntas são respondidas com Não. `registros` e\n"
    "`edicoes` dizem como o arquivo foi feito: os registros depois do CR=01 e os campos alterados; `cut` tira bytes\n"
    "do fim do arquivo.\n\n"
    "`tremvik validar --json ARQUIVO` responde o mesmo, com as tabelas de referência que acompanham o programa. As\n"
    "regras que não estão aqui são as que nenhum arquivo quebra; `tremvik exemplo --regra REGRA` diz por quê.\n";

// `text` with the next of the values in the place of each {}.
std::string Filled(std::string_view text, const std::vector<std::string>& values, std::size_t& next) {
  std::string filled(text);
  for (auto at = filled.find("{}"); at != std::string::npos; at = filled.find("{}", at)) {
    filled.replace(at, 2, values.at(next));
    at += values.at(next++).size();
  }
  return filled;
}

std::string MessageOf(const RuleExample& example) {
  const report::Rule& rule = *report::FindRule(example.codigo);
  std::size_t next = 0;
  std::string text = Filled(rule.texto1, example.valores, next);
  if (!rule.texto2.empty()) text.append("\r\n").append(Filled(rule.texto2, example.valores, next));
  return text;
}

ordered_json Box(const std::string& text, int style, std::string_view title) {
  return {{"texto", text}, {"estilo", style}, {"titulo", title}};
}

// The one message box of a fault. The whole file's rules have boxes of their own, and so has the question.
ordered_json BoxOf(const RuleExample& example) {
  const std::string message = MessageOf(example);
  const std::string asked = std::string(kContact) + message;
  const std::string cited = asked + "\r\nLinha nº " + std::to_string(example.linha_citada);
  const std::string& rule = example.codigo;
  if (rule <= "ARQ-03") return Box(message, estilo::kCritico, "Mensagem...");
  if (rule <= "ARQ-05") return Box(message, estilo::kCritico, "Atenção");
  if (rule <= "ARQ-17") return Box(message + "\r\n", estilo::kCritico, "Atenção");
  if (rule == "ARQ-18") return Box(message, estilo::kInformacao, "Atenção");
  if (rule == "CR10-36") {
    constexpr int kQuestion = estilo::kSimNao + estilo::kInformacao + estilo::kSegundoBotaoPadrao;
    return Box(asked + "\r\nDeseja continuar Sim/Não ? ", kQuestion, "Atenção");
  }
  return Box(cited, estilo::kInformacao, "Atenção");
}

// The first column of the fault: that of the field, of an unknown code, or where the line's length is wrong.
int ColumnOf(const RuleExample& example) {
  const KindInfo* const kind = FindKind(example.registro);
  if (kind == nullptr) return 1;
  const auto field = std::ranges::find(kind->fields, example.campo, &FieldInfo::name);
  if (field != kind->fields.end()) return field->position;
  const std::string bytes = sample::Broken(example);
  std::string_view rest = bytes;
  for (int line = 1; line < example.linha; ++line)
    rest.remove_prefix(rest.find('\n') + 1);
  return std::min(static_cast<int>(rest.find_first_of("\r\n")), kind->length) + 1;
}

std::string FileNameOf(const RuleExample& example) { return example.codigo + ".txt"; }

}  // namespace

ordered_json ExpectedOf(const RuleExample& example) {
  ordered_json places = ordered_json::array();
  if (example.linha > 0) {
    places.push_back({{"linha", example.linha},
                      {"registro", example.registro},
                      {"campo", example.campo},
                      {"posicao", ColumnOf(example)}});
  }
  return {{"arquivo", FileNameOf(example)},
          {"regra", example.codigo},
          {"registros", example.registros},
          {"edicoes", example.edicoes},
          {"saida", 1},
          {"mensagens", {BoxOf(example)}},
          {"inconsistencias", places},
          {"porque", example.porque}};
}

std::map<std::string, std::string> RuleKit() {
  std::map<std::string, std::string> files{{"LEIA-ME.md", std::string(kReadme)}};
  ordered_json expected = ordered_json::array();
  for (const RuleExample& example : sample::RuleExamples()) {
    if (!example.motivo.empty()) continue;
    files[FileNameOf(example)] = sample::Broken(example);
    expected.push_back(ExpectedOf(example));
  }
  files["esperado.json"] = expected.dump(1) + "\n";
  return files;
}

}  // namespace tremvik::cli
