#include "page/session.h"

#include <memory>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>

#include "layout/cr05.h"
#include "report/catalogue.h"
#include "report/formats.h"
#include "report/line_view.h"
#include "report/sha256.h"
#include "runtime/text.h"
#include "text/json_text.h"

namespace tremvik::page {
namespace {

using Json = nlohmann::ordered_json;

const report::Heading kHeading{.programa = "tremvik " TREMVIK_VERSION, .tabelas = "as do programa"};

std::string Written(report::Format& format, const std::vector<report::FileReport>& files) {
  report::Summary summary;
  std::string text = format.Begin(kHeading);
  for (const auto& file : files) {
    text += format.File(file);
    summary.Add(file);
  }
  return text + format.End(summary);
}

// For each finding its wrong columns as pairs of first and last.
Json MarksOf(const report::FileReport& file) {
  Json all = Json::array();
  report::LineFinder lines(file.conteudo);
  for (const Finding& finding : file.exame.inconsistencias) {
    const report::Place place = report::PlaceOf(finding);
    Json& marks = all.emplace_back(Json::array());
    for (const auto& columns : report::WrongColumns(place, lines.Find(place.linha)))
      marks.push_back({columns.first, columns.last});
  }
  return all;
}

template <typename F>
std::string Text(const F& field, std::string_view line) {
  const auto begin = static_cast<std::size_t>(field.position - 1);
  return begin < line.size() ? std::string(Utf8(line.substr(begin, static_cast<std::size_t>(field.width))))
                             : "";
}

// Where each declaration begins, and whose it is.
Json DeclarationsOf(const std::string& bytes) {
  Json all = Json::array();
  report::LineFinder lines(bytes);
  for (int number = 1;; ++number) {
    const report::LineBytes line = lines.Find(number);
    if (!line.exists) return all;
    const std::string_view content = line.bytes.substr(0, line.content);
    if (!content.starts_with(Codigo(Cr05::kKind))) continue;
    all.push_back(
        {{"linha", number}, {"ie", Text(Cr05::kIE, content)}, {"referencia", Text(Cr05::kRef, content)}});
  }
}

}  // namespace

std::string RulesAsJson() {
  Json rules = Json::array();
  for (const report::Rule& rule : report::Catalogue()) {
    rules.push_back({{"codigo", rule.codigo},
                     {"titulo", rule.titulo},
                     {"explicacao", rule.explicacao},
                     {"comoMendar", rule.como_mendar}});
  }
  return text::JsonText(rules);
}

std::string Session::Examine(std::string name, std::string bytes, const ExaminationOptions& options) {
  report::FileReport file;
  file.arquivo = std::move(name);
  file.conteudo = std::move(bytes);
  file.tamanho = file.conteudo.size();
  file.sha256 = report::Sha256(file.conteudo);
  file.exame = Examinar(file.conteudo, host_.host(), options);
  file.estado = file.exame.estado == FileState::kAccepted ? report::FileVerdict::kAccepted
                                                          : report::FileVerdict::kRefused;
  std::vector<report::FileReport> one;
  one.push_back(std::move(file));
  const auto format = report::MakeFormat(report::FormatKind::kJson);
  std::string answer = "{\"relatorio\":" + Written(*format, one);
  answer += ",\"marcas\":" + text::JsonText(MarksOf(one.front()));
  answer += ",\"declaracoes\":" + text::JsonText(DeclarationsOf(one.front().conteudo)) + "}";
  files_.push_back(std::move(one.front()));
  return answer;
}

std::string Session::Report(std::string_view form, bool masked) const {
  const report::FormatInfo* const info = report::FindFormat(form);
  if (info == nullptr || masked) throw std::invalid_argument("não há relatório com esse formato");
  const auto format = report::MakeFormat(info->kind);
  return Written(*format, files_);
}

}  // namespace tremvik::page
