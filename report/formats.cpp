#include "report/formats.h"

#include <algorithm>
#include <array>

#include "report/concise_format.h"
#include "report/csv_format.h"
#include "report/github_format.h"
#include "report/html_format.h"
#include "report/json_format.h"
#include "report/junit_format.h"
#include "report/sarif_format.h"
#include "report/text_format.h"

namespace tremvik::report {

std::span<const FormatInfo> Formats() {
  static constexpr std::array kFormats{
      FormatInfo{FormatKind::kTexto, "texto", false, true, "para ler: cada falta no seu lugar e como mendar"},
      FormatInfo{FormatKind::kConciso, "conciso", false, false, "uma linha por falta, para editores"},
      FormatInfo{FormatKind::kJson, "json", true, false, "um documento JSON, para programas"},
      FormatInfo{FormatKind::kSarif, "sarif", true, false, "SARIF 2.1.0, para análise de código"},
      FormatInfo{FormatKind::kJunit, "junit", false, false,
                 "XML do JUnit: cada declaração é um caso de teste"},
      FormatInfo{FormatKind::kGithub, "github", false, false, "anotações de um workflow do GitHub"},
      FormatInfo{FormatKind::kCsv, "csv", false, false, "para planilhas, com ponto e vírgula"},
      FormatInfo{FormatKind::kHtml, "html", true, false, "uma página para ler, imprimir e enviar"},
  };
  return kFormats;
}

const FormatInfo* FindFormat(std::string_view nome) {
  const auto formats = Formats();
  const auto found = std::ranges::find(formats, nome, &FormatInfo::nome);
  return found == formats.end() ? nullptr : &*found;
}

std::unique_ptr<Format> MakeFormat(FormatKind kind, const text::Look& look) {
  switch (kind) {
    case FormatKind::kTexto:
      return std::make_unique<TextFormat>(look);
    case FormatKind::kConciso:
      return std::make_unique<ConciseFormat>();
    case FormatKind::kJson:
      return std::make_unique<JsonFormat>();
    case FormatKind::kSarif:
      return std::make_unique<SarifFormat>();
    case FormatKind::kJunit:
      return std::make_unique<JunitFormat>();
    case FormatKind::kGithub:
      return std::make_unique<GithubFormat>();
    case FormatKind::kCsv:
      return std::make_unique<CsvFormat>();
    case FormatKind::kHtml:
      return std::make_unique<HtmlFormat>();
  }
  return nullptr;
}

}  // namespace tremvik::report
