#include "anonymizer/masked_report.h"

#include <algorithm>
#include <string>
#include <tuple>
#include <vector>

#include "report/catalogue.h"
#include "report/line_view.h"
#include "report/sha256.h"
#include "runtime/text.h"

namespace tremvik::anonymizer {
namespace {

bool SamePlace(const Finding& a, const Finding& b) {
  return std::tie(a.regra, a.tipo, a.linha, a.coluna, a.campo) ==
         std::tie(b.regra, b.tipo, b.linha, b.coluna, b.campo);
}

// A rule's text without what a run fills in.
std::string TextOf(const report::Rule& rule) {
  std::string text = rule.texto1;
  if (!rule.texto2.empty()) text.append("\r\n").append(rule.texto2);
  for (std::size_t at = 0; (at = text.find("{}", at)) != std::string::npos;)
    text.replace(at, 2, "…");
  return text;
}

// Nothing of the finding but its place, its rule's text and what the anonymized file has there.
Finding Bare(Finding finding, const std::string& bytes) {
  report::LineFinder lines(bytes);
  const report::LineBytes line = lines.Find(finding.linha);
  const report::Rule* const rule = report::FindRule(finding.regra);
  finding.mensagem = rule == nullptr ? "" : TextOf(*rule);
  finding.porque.clear();
  finding.valor = finding.coluna < 1
                      ? ""
                      : Utf8(Mid(line.bytes.substr(0, line.content), static_cast<std::size_t>(finding.coluna),
                                 static_cast<std::size_t>(std::max(finding.largura, 0))));
  return finding;
}

}  // namespace

Mask MakeMask(std::string_view bytes, const Examiner& examine, std::uint64_t seed) {
  Mask mask{Anonymize(bytes, seed), {}};
  mask.exame = examine(mask.other.bytes);
  return mask;
}

report::FileReport Masked(const report::FileReport& file, const Mask& mask) {
  const Registrations& registrations = mask.other.registrations;
  report::FileReport masked = file;
  masked.arquivo = registrations.InText(file.arquivo);
  masked.problema = registrations.InText(file.problema);
  masked.conteudo = mask.other.bytes;
  if (!file.sha256.empty()) masked.sha256 = report::Sha256(masked.conteudo);
  auto next = mask.exame.inconsistencias.begin();
  const auto end = mask.exame.inconsistencias.end();
  for (Finding& finding : masked.exame.inconsistencias) {
    const auto same =
        std::find_if(next, end, [&finding](const Finding& each) { return SamePlace(each, finding); });
    const bool importer = finding.doImportador;
    finding = same == end ? Bare(finding, masked.conteudo) : *same;
    finding.doImportador = importer;
    if (same != end) next = std::next(same);
  }
  for (report::KnownFinding& gone : masked.sumidas) {
    gone.ie = registrations.InText(gone.ie);
    gone.valor.clear();
  }
  return masked;
}

}  // namespace tremvik::anonymizer
