#include "page/session.h"

#include <memory>
#include <nlohmann/json.hpp>
#include <span>
#include <stdexcept>
#include <utility>

#include "anonymizer/masked_report.h"
#include "layout/cr05.h"
#include "report/catalogue.h"
#include "report/formats.h"
#include "report/line_view.h"
#include "report/search.h"
#include "report/sha256.h"
#include "report/tree_view.h"
#include "runtime/text.h"
#include "text/json_text.h"

namespace tremvik::page {
namespace {

using Json = nlohmann::ordered_json;

const report::Heading kHeading{.programa = "tremvik " TREMVIK_VERSION, .tabelas = "as do programa"};

std::string Written(report::Format& format, std::span<const report::FileReport> files) {
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

// The text of a field of declarations' headers, as it stands.
std::string HeaderText(const report::FileTree& tree, const report::TreeRecord& header,
                       std::string_view name) {
  for (const report::TreeField& field : tree.Fields(header)) {
    if (field.nome == name) return Utf8(field.bytes);
  }
  return {};
}

// Where each declaration begins, and whose it is; what stands before the first one is told as one without a
// name.
Json DeclarationsOf(const report::FileTree& tree) {
  Json all = Json::array();
  const auto records = tree.records();
  for (std::size_t i = 0; i < records.size(); ++i) {
    const bool header = records[i].kind != nullptr && records[i].kind->kind == Kind::kCr05;
    if (!header && !all.empty()) continue;
    all.push_back({{"linha", records[i].linha},
                   {"ie", header ? HeaderText(tree, records[i], Cr05::kIE.name) : ""},
                   {"referencia", header ? HeaderText(tree, records[i], Cr05::kRef.name) : ""}});
  }
  return all;
}

}  // namespace

std::string RulesAsJson() {
  Json rules = Json::array();
  for (const report::Rule& rule : report::Catalogue()) {
    rules.push_back({{"codigo", rule.codigo},
                     {"titulo", rule.titulo},
                     {"mensagem", rule.texto2.empty() ? rule.texto1 : rule.texto1 + "\n" + rule.texto2},
                     {"explicacao", rule.explicacao},
                     {"comoMendar", rule.como_mendar}});
  }
  return text::JsonText(rules);
}

std::string SearchAsJson(std::string_view typed) {
  constexpr std::size_t kMost = 20;
  Json codes = Json::array();
  const std::string code = report::CodeIn(typed);
  if (report::FindRule(code) != nullptr) codes.push_back(code);
  for (const report::Candidate& candidate : report::FindByMessage(typed)) {
    if (codes.size() < kMost && candidate.regra->codigo != code) codes.push_back(candidate.regra->codigo);
  }
  return text::JsonText(codes);
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
  files_.push_back(std::move(one.front()));
  answer += ",\"declaracoes\":" + text::JsonText(DeclarationsOf(TreeOf(files_.size() - 1))) + "}";
  return answer;
}

const report::FileTree& Session::TreeOf(std::size_t file) {
  if (!tree_ || tree_of_ != file) tree_ = std::make_unique<report::FileTree>(files_.at(file).conteudo);
  tree_of_ = file;
  return *tree_;
}

std::string Session::Records(std::size_t file, int from, int to) {
  const report::FileTree& tree = TreeOf(file);
  const auto findings = report::ByLine(files_.at(file).exame.inconsistencias);
  Json records = Json::array();
  for (const report::TreeRecord& record : tree.records()) {
    if (record.linha >= from && record.linha <= to)
      records.push_back(report::RecordAsJson(tree, record, findings));
  }
  return text::JsonText(
      {{"causa", tree.causa()}, {"cortado", tree.cut()}, {"registros", std::move(records)}});
}

std::string Session::Report(std::string_view form, bool masked) {
  constexpr std::uint64_t kSeed = 1;
  const report::FormatInfo* const info = report::FindFormat(form);
  if (info == nullptr) throw std::invalid_argument("não há relatório com esse formato");
  const auto format = report::MakeFormat(info->kind);
  if (!masked) return Written(*format, files_);
  const auto examine = [this](std::string_view bytes) {
    return Examinar(bytes, host_.host(), {.limite = 0});
  };
  std::vector<report::FileReport> others;
  for (const report::FileReport& file : files_)
    others.push_back(anonymizer::Masked(file, anonymizer::MakeMask(file.conteudo, examine, kSeed)));
  return Written(*format, others);
}

}  // namespace tremvik::page
