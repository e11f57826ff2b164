#include "report/sarif_format.h"

#include <fmt/format.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string_view>

#include "report/catalogue.h"
#include "report/fingerprint.h"
#include "report/words.h"
#include "runtime/text.h"
#include "text/json_text.h"

namespace tremvik::report {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kMostNotifications = 1000;

// A file name as a URI: a relative one as a reference, one from a root as an absolute URI.
std::string UriOf(std::string_view name) {
  static constexpr std::string_view kHex = "0123456789ABCDEF";
  static constexpr std::string_view kPlain = "-._~/";
  std::string uri;
  for (const char c : name) {
    const auto byte = static_cast<unsigned char>(c);
    const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    if (letter || IsDigit(c) || kPlain.find(c) != std::string_view::npos) {
      uri += c;
    } else {
      uri.append(1, '%').append(1, kHex[byte >> 4U]).append(1, kHex[byte & 0xFU]);
    }
  }
  return uri.starts_with("/") ? "file://" + uri : uri;
}

Json Text(std::string_view text) { return {{"text", text}}; }

Json RuleOf(const Rule& rule) {
  return {{"id", rule.codigo},
          {"shortDescription", Text(rule.titulo + ".")},
          {"fullDescription", Text(rule.explicacao)},
          {"help", Text(rule.como_mendar)},
          {"defaultConfiguration", {{"level", "error"}}}};
}

Json LocationOf(const FileReport& file, const Finding& finding) {
  Json place = {{"artifactLocation", {{"uri", UriOf(file.arquivo)}}}};
  if (finding.linha > 0) {
    Json region = {{"startLine", finding.linha}};
    if (finding.coluna > 0) {
      region["startColumn"] = finding.coluna;
      region["endColumn"] = finding.coluna + std::max(finding.largura, 1);
      region["snippet"] = Text(finding.valor);
    }
    place["region"] = std::move(region);
  }
  return Json::array({{{"physicalLocation", std::move(place)}}});
}

Json ResultOf(const FileReport& file, const Finding& finding, const std::string& fingerprint) {
  Json result = {{"ruleId", finding.regra}};
  if (const Rule* const rule = FindRule(finding.regra)) result["ruleIndex"] = rule - Catalogue().data();
  result["level"] = finding.tipo == FindingKind::kQuestion ? "warning" : "error";
  result["message"] = Text(MessageAndReason(finding));
  result["locations"] = LocationOf(file, finding);
  result["partialFingerprints"] = {{"tremvik/v1", fingerprint}};
  result["properties"] = {
      {"registro", finding.registro}, {"campo", finding.campo}, {"doImportador", finding.doImportador}};
  return result;
}

}  // namespace

std::string SarifFormat::Begin(const Heading& heading) {
  Json rules = Json::array();
  for (const Rule& rule : Catalogue())
    rules.push_back(RuleOf(rule));
  const std::size_t blank = heading.programa.find(' ');
  Json driver = {{"name", heading.programa.substr(0, blank)}, {"fullName", heading.programa}};
  if (blank != std::string::npos) driver["version"] = heading.programa.substr(blank + 1);
  driver["language"] = "pt-BR";
  driver["rules"] = std::move(rules);
  return R"({"$schema":"https://json.schemastore.org/sarif-2.1.0.json","version":"2.1.0","runs":[{"tool":)" +
         text::JsonText({{"driver", std::move(driver)}}) +
         R"(,"language":"pt-BR","defaultEncoding":"windows-1252","columnKind":"unicodeCodePoints","properties":)" +
         text::JsonText({{"tabelas", heading.tabelas}}) + ",\"results\":[";
}

std::string SarifFormat::File(const FileReport& file) {
  const std::vector<std::string> fingerprints = Fingerprints(file);
  std::string out;
  for (std::size_t i = 0; i < fingerprints.size(); ++i) {
    out += first_ ? "\n" : ",\n";
    out += text::JsonText(ResultOf(file, file.exame.inconsistencias[i], fingerprints[i]));
    first_ = false;
  }
  for (const Unexamined& unexamined : file.exame.naoExaminado) {
    Notify("warning", InWords(unexamined), file, unexamined.linha);
  }
  if (file.exame.limitado) Notify("warning", kLimitReached, file);
  if (file.estado == FileVerdict::kError) Notify("error", OneLine(file.problema), file);
  return out;
}

std::string SarifFormat::End(const Summary& summary) {
  std::string out = "\n],\"invocations\":[{\"executionSuccessful\":";
  out += summary.erros == 0 ? "true" : "false";
  if (!notifications_.empty()) {
    out += fmt::format(",\"toolExecutionNotifications\":[{}]", fmt::join(notifications_, ","));
  }
  return out + "}]}]}\n";
}

void SarifFormat::Notify(std::string_view level, std::string_view words, const FileReport& file, int linha) {
  if (notifications_.size() == kMostNotifications) return;
  Finding place;
  place.linha = linha;
  notifications_.push_back(
      text::JsonText({{"level", level}, {"message", Text(words)}, {"locations", LocationOf(file, place)}}));
}

}  // namespace tremvik::report
